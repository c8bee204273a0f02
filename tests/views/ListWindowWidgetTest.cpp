#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <algorithm>

#include "ListWindowFixture.h"
#include "QtTestSupport.h"
#include "views/AppMenu.h"
#include "views/QtContentView.h"
#include "views/QtToolkit.h"
#include "views/SystemSymbols.h"
#include "views/TrafficLightButton.h"

namespace viewtest {
namespace {

using platform::qt::AppMenu;
using platform::qt::ListRowWidget;

QStringList symbolsOf(const ListRowWidget& row) {
    QStringList symbols;
    for (std::size_t index = 0; index < 3; ++index)
        symbols << row.button(index)->symbol();
    return symbols;
}

QStringList titlesOf(const QMenu& menu) {
    QStringList titles;
    for (const QAction* action : menu.actions())
        titles << (action->isSeparator() ? QStringLiteral("-") : action->text());
    return titles;
}

// The widgets of the window list that show, from top to bottom: "row" or
// "divider".
QStringList listOrder(const QWidget& tree) {
    const auto* list = tree.findChild<QWidget*>(QStringLiteral("windowList"));
    std::vector<const QWidget*> shown;
    for (const QObject* child : list->children()) {
        const auto* item = qobject_cast<const QWidget*>(child);
        if (item && !item->isHidden())
            shown.push_back(item);
    }
    std::sort(shown.begin(), shown.end(),
              [](const QWidget* a, const QWidget* b) { return a->y() < b->y(); });
    QStringList order;
    for (const QWidget* item : shown)
        order << (dynamic_cast<const ListRowWidget*>(item) ? QStringLiteral("row")
                                                           : item->objectName());
    return order;
}

AppMenu& appMenuOf(const QWidget& tree) {
    auto* button = tree.findChild<QPushButton*>(QStringLiteral("appMenuButton"));
    return dynamic_cast<AppMenu&>(*button->menu());
}

TEST_F(ListWindowTest, RowsDrawTheirWindowsWithADividerUnderAllButTheLast) {
    show(windowsContent({documents, downloads}));
    const auto rows = rowWidgets();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0]->title()->text(), "Documents");
    EXPECT_TRUE(rows[0]->title()->font().bold());
    EXPECT_EQ(rows[1]->title()->text(), "Downloads");
    EXPECT_FALSE(rows[1]->title()->font().bold());
    EXPECT_EQ(rows[0]->button(0)->color(), platform::qt::titleBarColor::red());
    EXPECT_EQ(rows[0]->button(2)->color(), platform::qt::titleBarColor::green());
    EXPECT_EQ(listOrder(*widget->tree()), (QStringList{"row", "divider", "row"}));

    redraw(windowsContent({downloads}));
    EXPECT_EQ(listOrder(*widget->tree()), QStringList{"row"});
}

TEST_F(ListWindowTest, HoverShowsTheSymbolsAndLeavingHidesThem) {
    show(windowsContent({documents, downloads}));
    ListRowWidget* row = rowWidgets().at(1);
    const QStringList plain{"circle.fill", "circle.fill", "circle.fill"};
    EXPECT_EQ(symbolsOf(*row), plain);

    hover(row, true);
    EXPECT_EQ(symbolsOf(*row),
              (QStringList{"x.circle.fill", "minus.circle.fill", "viewfinder.circle.fill"}));
    EXPECT_EQ(symbolsOf(*rowWidgets().at(0)), plain);
    hover(row, false);
    EXPECT_EQ(symbolsOf(*row), plain);

    // A change of the list keeps the rows that stay, and the pointer that
    // rests on one still shows its symbols; a row that comes starts plain.
    hover(row, true);
    redraw(windowsContent({downloads, documents}));
    ASSERT_EQ(rowWidgets().size(), 2u);
    EXPECT_EQ(rowWidgets().at(0), row);
    EXPECT_EQ(symbolsOf(*row),
              (QStringList{"x.circle.fill", "minus.circle.fill", "viewfinder.circle.fill"}));
    EXPECT_EQ(symbolsOf(*rowWidgets().at(1)), plain);
}

TEST_F(ListWindowTest, ARoundButtonRunsItsOwnActionAndTheRowRaises) {
    show(windowsContent({documents, downloads}));
    ListRowWidget* row = rowWidgets().at(1);

    for (std::size_t index = 0; index < 3; ++index)
        clickOn(row->button(index));
    EXPECT_EQ(coordinator.actions(),
              (std::vector<std::string>{"closeWindow", "toggleMinimized", "toggleFullScreen"}));

    coordinator.calls.clear();
    clickOn(row->title());  // the title lets the click through to the row
    clickAt(row->window(), row->mapTo(row->window(), QPoint(row->width() - 2, 2)));
    ASSERT_EQ(coordinator.actions(), (std::vector<std::string>{"raiseWindow", "raiseWindow"}));
    EXPECT_EQ(*coordinator.calls[0].window, *row->row().window());
}

TEST_F(ListWindowTest, AnActionThatRedrawsTheListLeavesNoDanglingRow) {
    show(windowsContent({documents, downloads}));
    // The close refreshes the list from inside the click, as the real one does.
    coordinator.onCall = [this] {
        content = windowsContent({downloads});
        changed.emit();
    };
    clickOn(rowWidgets().at(0)->button(0));
    QCoreApplication::processEvents();
    EXPECT_EQ(rowWidgets().size(), 1u);
    clickOn(rowWidgets().at(0));
    EXPECT_EQ(coordinator.actions(), (std::vector<std::string>{"closeWindow", "raiseWindow"}));
}

TEST_F(ListWindowTest, TheMenuListsFavouritesADividerAndTrackedApplications) {
    show(windowsContent({documents}));
    auto* button = widget->tree()->findChild<QPushButton*>(QStringLiteral("appMenuButton"));
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->text(), "Files");
    AppMenu& menu = appMenuOf(*widget->tree());
    EXPECT_EQ(titlesOf(menu), (QStringList{"Files", "-", "Editor", "Notes"}));
    EXPECT_EQ(titlesOf(*menu.actions().at(0)->menu()), QStringList{"Unfavorite"});
    EXPECT_EQ(titlesOf(*menu.actions().at(2)->menu()), (QStringList{"Favorite", "Hide"}));

    auto noFavourites = windowsContent({documents});
    noFavourites.menu.favorites.clear();
    redraw(noFavourites);
    EXPECT_EQ(titlesOf(appMenuOf(*widget->tree())), (QStringList{"-", "Editor", "Notes"}));
}

TEST_F(ListWindowTest, APlainClickOnAnEntrySelectsAndItsSubmenuRunsTheGroupingCommands) {
    show(windowsContent({documents}));
    AppMenu& menu = appMenuOf(*widget->tree());
    menu.popup(QPoint(0, 0));
    ASSERT_TRUE(runQtUntil([&] { return menu.isVisible(); }));
    QAction* editor = menu.actions().at(2);

    clickAt(&menu, menu.actionGeometry(editor).center());
    EXPECT_EQ(chosen, std::vector<std::string>{"select Editor"});
    EXPECT_FALSE(menu.isVisible());
    EXPECT_FALSE(editor->menu()->isVisible());

    // Return on the highlighted entry selects it too.
    menu.popup(QPoint(0, 0));
    ASSERT_TRUE(runQtUntil([&] { return menu.isVisible(); }));
    menu.setActiveAction(menu.actions().at(3));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(&menu, &enter);
    EXPECT_EQ(chosen.back(), "select Notes");

    editor->menu()->actions().at(1)->trigger();
    menu.actions().at(0)->menu()->actions().at(0)->trigger();
    EXPECT_EQ(chosen, (std::vector<std::string>{"select Editor", "select Notes", "Hide Editor",
                                                "Unfavorite Files"}));
}

TEST_F(ListWindowTest, RestingOnAnEntryOpensItsSubmenuWithoutSelecting) {
    show(windowsContent({documents}));
    AppMenu& menu = appMenuOf(*widget->tree());
    menu.popup(QPoint(0, 0));
    ASSERT_TRUE(runQtUntil([&] { return menu.isVisible(); }));
    QAction* editor = menu.actions().at(2);
    const QPoint point = menu.actionGeometry(editor).center();
    QMouseEvent move(QEvent::MouseMove, point, menu.mapToGlobal(point), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(&menu, &move);
    EXPECT_TRUE(runQtUntil([&] { return editor->menu()->isVisible(); }));
    EXPECT_TRUE(chosen.empty());
    menu.hide();
}

TEST_F(ListWindowTest, TheErrorTreeIsOneLineWithoutAMenuAndTheEmptyTextKeepsIt) {
    ListWindowView::Content error;
    error.tree = ListWindowView::Tree::errorText;
    error.errorText = "The operation couldn't be completed.";
    show(error);
    auto* label = dynamic_cast<QLabel*>(widget->tree());
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text().toStdString(), error.errorText);
    EXPECT_EQ(label->contentsMargins(), QMargins());
    EXPECT_EQ(widget->findChild<QPushButton*>(), nullptr);

    ListWindowView::Content permission;
    permission.tree = ListWindowView::Tree::permission;
    redraw(permission);
    EXPECT_EQ(widget->tree()->objectName(), "permissionRequest");
    EXPECT_EQ(widget->tree()->findChild<QPushButton*>(QStringLiteral("appMenuButton")), nullptr);

    // Without windows the empty text shows under the menu.
    auto empty = windowsContent({});
    empty.emptyText = "Files currently has no open windows.";
    show(empty);
    auto* text = widget->tree()->findChild<QLabel*>(QStringLiteral("emptyText"));
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->text(), "Files currently has no open windows.");
    EXPECT_GE(text->width(), 250);
    EXPECT_LT(text->font().pointSizeF(), QApplication::font().pointSizeF());
    EXPECT_NE(widget->tree()->findChild<QPushButton*>(QStringLiteral("appMenuButton")), nullptr);
    EXPECT_TRUE(rowWidgets().empty());
}

TEST_F(ListWindowTest, ScreenReadersHearTitlesButtonNamesAndTheMenuLabel) {
    show(windowsContent({documents}));
    ListRowWidget* row = rowWidgets().at(0);
    QAccessibleInterface* rowInterface = QAccessible::queryAccessibleInterface(row);
    ASSERT_NE(rowInterface, nullptr);
    EXPECT_EQ(rowInterface->role(), QAccessible::Button);
    EXPECT_EQ(rowInterface->text(QAccessible::Name), "Documents");
    QStringList names;
    for (std::size_t index = 0; index < 3; ++index) {
        QAccessibleInterface* button = QAccessible::queryAccessibleInterface(row->button(index));
        EXPECT_EQ(button->role(), QAccessible::Button);
        names << button->text(QAccessible::Name);
    }
    EXPECT_EQ(names, (QStringList{"Close", "Minimize", "Full Screen"}));
    auto* menuButton = widget->tree()->findChild<QPushButton*>(QStringLiteral("appMenuButton"));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(menuButton)->text(QAccessible::Name), "Files");
}

TEST_F(ListWindowTest, ThePanelGrowsAndShrinksWithItsContent) {
    platform::qt::QtToolkit toolkit;
    auto panel = toolkit.makePanel();
    content = windowsContent({documents});
    panel->setContentView(std::make_shared<platform::qt::QtContentView>(
        new platform::qt::ListWindowWidget([this] { return content; }, changed, coordinator)));
    panel->orderFront();
    QCoreApplication::processEvents();
    const double oneRow = panel->frame().size.height;

    auto third = sim.addWindow(appPid, corvane::testing::SimWindowSetup::titled("Third"));
    redraw(windowsContent({documents, downloads, third}));
    ASSERT_TRUE(runQtUntil([&] { return panel->frame().size.height > oneRow; }));
    redraw(windowsContent({documents}));
    EXPECT_TRUE(runQtUntil([&] { return panel->frame().size.height == oneRow; }));
    panel->close();
}

// The panel is placed by its size, so what changed while it was hidden is
// laid out as it is redrawn for a showing, not in the layouts' own turns
// after the window is mapped at its old size.
TEST_F(ListWindowTest, AHiddenPanelTakesItsNewSizeAsItIsRedrawn) {
    platform::qt::QtToolkit toolkit;
    auto panel = toolkit.makePanel();
    content = windowsContent({documents});
    auto* list =
        new platform::qt::ListWindowWidget([this] { return content; }, changed, coordinator);
    panel->setContentView(std::make_shared<platform::qt::QtContentView>(list));
    panel->orderFront();
    QCoreApplication::processEvents();
    const double oneRow = panel->frame().size.height;
    panel->close();

    auto third = sim.addWindow(appPid, corvane::testing::SimWindowSetup::titled("Third"));
    content = windowsContent({documents, downloads, third});
    changed.emit();
    list->redraw();
    EXPECT_GT(panel->frame().size.height, oneRow);
}

// 100,000 characters once made a panel 32,767 points wide, every row off
// the screen.
TEST_F(ListWindowTest, ALongTitleIsShortenedInTheMiddleToKeepThePanelOnItsScreen) {
    const std::string longTitle = "Report " + std::string(100'000, 'x') + " final.txt";
    auto titled = sim.addWindow(appPid, corvane::testing::SimWindowSetup::titled(longTitle));
    platform::qt::QtToolkit toolkit;
    auto panel = toolkit.makePanel();
    content = windowsContent({documents, titled});
    panel->setContentView(std::make_shared<platform::qt::QtContentView>(
        new platform::qt::ListWindowWidget([this] { return content; }, changed, coordinator)));
    panel->orderFront();
    QCoreApplication::processEvents();

    const QRect workArea = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_GT(panel->frame().size.width, workArea.width() * 0.8) << "uses the room there is";
    EXPECT_LE(panel->frame().size.width, workArea.width());
    ListRowWidget* row = nullptr;
    for (auto* candidate : QApplication::allWidgets()) {
        if (auto* found = dynamic_cast<ListRowWidget*>(candidate);
            found && found->accessibleName().size() > 1000)
            row = found;
    }
    ASSERT_NE(row, nullptr);
    const QString shown = row->title()->text();
    EXPECT_TRUE(shown.startsWith("Report x")) << shown.left(40).toStdString();
    EXPECT_TRUE(shown.endsWith("x final.txt"));
    EXPECT_TRUE(shown.contains(QChar(0x2026)));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(row)->text(QAccessible::Name).toStdString(),
              longTitle);
    EXPECT_EQ(
        QAccessible::queryAccessibleInterface(row->title())->text(QAccessible::Name).toStdString(),
        longTitle);
    panel->close();
}

}  // namespace
}  // namespace viewtest
