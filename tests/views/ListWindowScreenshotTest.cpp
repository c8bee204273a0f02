#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QPushButton>
#include <algorithm>
#include <cstdlib>

#include "ListWindowFixture.h"
#include "QtTestSupport.h"
#include "views/PaintedIcon.h"
#include "views/StatusBarGlyph.h"
#include "views/SystemSymbols.h"
#include "views/TrafficLightButton.h"

// Renders the panel as a person would see it. With TARNWICK_SCREENSHOTS set
// to a folder, the pictures are saved there to be looked at.
namespace viewtest {
namespace {

QPalette darkPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x2B, 0x2B, 0x2D));
    palette.setColor(QPalette::WindowText, QColor(0xEC, 0xEC, 0xEC));
    palette.setColor(QPalette::Button, QColor(0x3A, 0x3A, 0x3C));
    palette.setColor(QPalette::ButtonText, QColor(0xEC, 0xEC, 0xEC));
    palette.setColor(QPalette::Base, QColor(0x1E, 0x1E, 0x1E));
    palette.setColor(QPalette::Text, QColor(0xEC, 0xEC, 0xEC));
    palette.setColor(QPalette::Light, QColor(0x50, 0x50, 0x52));
    palette.setColor(QPalette::Mid, QColor(0x30, 0x30, 0x32));
    palette.setColor(QPalette::Dark, QColor(0x18, 0x18, 0x18));
    return palette;
}

void save(const QPixmap& picture, const QString& name) {
    const char* folder = std::getenv("TARNWICK_SCREENSHOTS");
    if (!folder)
        return;
    QDir().mkpath(QString::fromLocal8Bit(folder));
    picture.save(QDir(QString::fromLocal8Bit(folder)).filePath(name));
}

QColor centreOf(const QPixmap& picture, const QWidget& root, const QWidget& part) {
    const QPointF centre =
        QPointF(part.mapTo(&root, part.rect().center())) * picture.devicePixelRatio();
    return picture.toImage().pixelColor(centre.toPoint());
}

class ListWindowScreenshot : public ListWindowTest {
  protected:
    ListWindowView::Content desktop() {
        auto minimised = corvane::testing::SimWindowSetup::titled("Quarterly Report.pdf");
        minimised.minimized = true;
        auto fixed = corvane::testing::SimWindowSetup::titled("Connect to Server");
        fixed.zoomButton.enabled = false;
        fixed.minimizeButton.enabled = false;
        fixed.becomesMain = false;
        const auto report = sim.addWindow(appPid, minimised);
        const auto server = sim.addWindow(appPid, fixed);
        loop.runUntilIdle();
        return windowsContent({documents, downloads, report, server});
    }
};

TEST_F(ListWindowScreenshot, ThePanelInLightAndDarkWithOneRowUnderThePointer) {
    show(desktop());
    hover(rowWidgets().at(1), true);
    widget->adjustSize();
    QPixmap light = widget->grab();
    save(light, QStringLiteral("list-window-light.png"));

    // Resting, an enabled button is its full colour; a disabled one faint.
    const auto rows = rowWidgets();
    EXPECT_EQ(centreOf(light, *widget, *rows[0]->button(0)), platform::qt::titleBarColor::red());
    const QColor faint = centreOf(light, *widget, *rows[3]->button(2));
    EXPECT_GT(faint.lightness(), platform::qt::titleBarColor::green().lightness());
    EXPECT_NEAR(rows[2]->title()->palette().color(QPalette::WindowText).alphaF(), 0.5, 0.01);
    // Under the pointer, the close mark is cut out of the red disc.
    EXPECT_NE(centreOf(light, *widget, *rows[1]->button(0)), platform::qt::titleBarColor::red());

    widget->setPalette(darkPalette());
    QCoreApplication::processEvents();
    QPixmap dark = widget->grab();
    save(dark, QStringLiteral("list-window-dark.png"));
    EXPECT_EQ(centreOf(dark, *widget, *rows[0]->button(0)), platform::qt::titleBarColor::red());
    EXPECT_GT(rows[0]->title()->palette().color(QPalette::WindowText).lightness(), 200);
}

TEST_F(ListWindowScreenshot, TheEmptyAndErrorPanels) {
    auto empty = windowsContent({});
    empty.emptyText = "Files currently has no open windows.";
    show(empty);
    widget->adjustSize();
    save(widget->grab(), QStringLiteral("list-window-empty.png"));

    ListWindowView::Content error;
    error.tree = ListWindowView::Tree::errorText;
    error.errorText = "The operation couldn't be completed.";
    redraw(error);
    widget->adjustSize();
    const QPixmap picture = widget->grab();
    save(picture, QStringLiteral("list-window-error.png"));
    EXPECT_LT(picture.height(), 40);
}

TEST_F(ListWindowScreenshot, TheApplicationMenuWithAnEntryOpen) {
    show(windowsContent({documents}));
    auto* button = widget->tree()->findChild<QPushButton*>(QStringLiteral("appMenuButton"));
    QMenu& menu = *button->menu();
    menu.popup(button->mapToGlobal(QPoint(0, button->height())));
    ASSERT_TRUE(runQtUntil([&] { return menu.isVisible(); }));
    QAction* editor = menu.actions().at(2);
    menu.setActiveAction(editor);
    QMenu& submenu = *editor->menu();
    submenu.popup(menu.mapToGlobal(menu.actionGeometry(editor).topRight()));
    ASSERT_TRUE(runQtUntil([&] { return submenu.isVisible(); }));

    const QPixmap main = menu.grab();
    const QPixmap side = submenu.grab();
    QPixmap both(main.width() + side.width() + 4, std::max(main.height(), side.height()));
    both.setDevicePixelRatio(main.devicePixelRatio());
    both.fill(Qt::transparent);
    QPainter painter(&both);
    painter.drawPixmap(0, 0, main);
    painter.drawPixmap(main.width() / main.devicePixelRatio() + 4,
                       menu.actionGeometry(editor).top(), side);
    painter.end();
    save(both, QStringLiteral("app-menu.png"));
    submenu.hide();
    menu.hide();
}

// A sheet of every symbol at three sizes on light and dark, and the status
// glyph at its usual sizes.
TEST(SymbolSheet, EverySymbolAndTheStatusGlyph) {
    const QStringList names{
        "circle.fill", "x.circle.fill",       "minus.circle.fill", "viewfinder.circle.fill",
        "circle",      "checkmark.seal.fill", "xmark.seal.fill",   "gear",
        "sparkle"};
    const QList<int> sizes{14, 24, 48};
    const QList<QColor> colours{platform::qt::titleBarColor::red(),
                                platform::qt::titleBarColor::yellow(),
                                platform::qt::titleBarColor::green()};
    const int cell = 56;
    QPixmap sheet(cell * names.size(), cell * sizes.size() * 2);
    QPainter painter(&sheet);
    for (int half = 0; half < 2; ++half) {
        const QColor background = half ? QColor(0x2B, 0x2B, 0x2D) : QColor(0xF2, 0xF2, 0xF2);
        const QColor ink = half ? QColor(0xEC, 0xEC, 0xEC) : QColor(0x1E, 0x1E, 0x1E);
        painter.fillRect(0, half * cell * sizes.size(), sheet.width(), cell * sizes.size(),
                         background);
        for (int column = 0; column < names.size(); ++column)
            for (int line = 0; line < sizes.size(); ++line) {
                const int size = sizes[line];
                const QRectF box(column * cell + (cell - size) / 2.0,
                                 (half * sizes.size() + line) * cell + (cell - size) / 2.0, size,
                                 size);
                const QColor colour = column < 4 ? colours[column % 3] : ink;
                platform::qt::paintSymbol(painter, box, names[column], colour);
            }
    }
    painter.end();
    save(sheet, QStringLiteral("symbols.png"));

    const QList<int> glyphSizes{16, 22, 32, 64};
    QPixmap glyphs(8 + 80 * glyphSizes.size(), 160);
    QPainter glyphPainter(&glyphs);
    glyphPainter.fillRect(0, 0, glyphs.width(), 80, QColor(0xEC, 0xEC, 0xEC));
    glyphPainter.fillRect(0, 80, glyphs.width(), 80, QColor(0x1C, 0x1C, 0x1E));
    for (int index = 0; index < glyphSizes.size(); ++index)
        for (int half = 0; half < 2; ++half) {
            const int size = glyphSizes[index];
            platform::qt::paintStatusBarGlyph(
                glyphPainter, QRectF(8 + index * 80, half * 80 + (80 - size) / 2.0, size, size));
        }
    glyphPainter.end();
    save(glyphs, QStringLiteral("status-bar-icon.png"));
    // The resource image, for whatever shows it as a picture file.
    save(platform::qt::statusBarIcon().pixmap(64), QStringLiteral("StatusBarIcon.png"));
    SUCCEED();
}

}  // namespace
}  // namespace viewtest
