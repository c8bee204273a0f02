#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QImage>
#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cstdlib>
#include <string>

#include "ListWindowFixture.h"
#include "QtTestSupport.h"
#include "views/PanelLayout.h"
#include "views/PanelScrollBar.h"
#include "views/QtContentView.h"
#include "views/QtToolkit.h"

namespace viewtest {
namespace {

using platform::qt::ListRowWidget;
using platform::qt::panelLayout::contentHeight;
using platform::qt::panelLayout::rowHeight;
using platform::qt::panelLayout::rowPitch;

// A panel with more windows than its screen has room for.
class ListWindowScrollingTest : public ListWindowTest {
  protected:
    void SetUp() override { showWindows(120); }

    void showWindows(int count) {
        if (panel)
            panel->close();
        handles.clear();
        titles.clear();
        for (int i = 0; i < count; ++i) {
            titles.push_back("Window " + std::to_string(i));
            handles.push_back(
                sim.addWindow(appPid, corvane::testing::SimWindowSetup::titled(titles.back())));
        }
        content = windowsContent(handles);
        panel = toolkit.makePanel();
        panel->setContentView(std::make_shared<platform::qt::QtContentView>(
            list = new platform::qt::ListWindowWidget([this] { return content; }, changed,
                                                      coordinator)));
        panel->orderFront();
        QCoreApplication::processEvents();
    }
    void TearDown() override { panel->close(); }

    QScrollBar& scrollBar() const { return *list->rowList()->verticalScrollBar(); }

    // Where the rows with widgets are wrong, what is wrong about the first
    // one; empty when every one shows the window of its position, in
    // reading order, and the rows in sight all have widgets.
    std::string wronglyDrawnRows() const {
        const auto rows = list->rowList()->rows();
        std::vector<bool> drawn(handles.size());
        for (const ListRowWidget* row : rows) {
            const auto position = static_cast<std::size_t>(row->y() / rowPitch);
            const std::string title = row->title()->accessibleName().toStdString();
            if (row->y() % rowPitch != 0 || position >= handles.size() ||
                title != titles[position] || !row->isVisible())
                return "row at " + std::to_string(row->y()) + " shows " + title;
            drawn[position] = true;
        }
        // A screen reader reads them in the order of the list's children.
        int above = -1;
        for (const QObject* child : list->rowList()->widget()->children()) {
            const auto* row = qobject_cast<const ListRowWidget*>(child);
            if (!row || row->isHidden())
                continue;
            if (row->y() < above)
                return "row at " + std::to_string(row->y()) + " read after a lower one";
            above = row->y();
        }
        const int top = scrollBar().value();
        const int bottom = top + list->rowList()->viewport()->height();
        for (int position = top / rowPitch; position * rowPitch < bottom; ++position) {
            if (static_cast<std::size_t>(position) < drawn.size() && !drawn[position])
                return "nothing drawn at " + std::to_string(position);
        }
        return {};
    }

    std::size_t rowWidgetsMade() const { return list->findChildren<ListRowWidget*>().size(); }

    std::vector<platform::AXUIElementRef> handles;
    std::vector<std::string> titles;
    void mouse(QWidget* target, QEvent::Type type, QPoint local, Qt::MouseButtons buttons) {
        QMouseEvent event(type, local, target->mapToGlobal(local),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, buttons,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(target, &event);
    }

    platform::qt::QtToolkit toolkit;
    std::shared_ptr<platform::Window> panel;
    platform::qt::ListWindowWidget* list = nullptr;
};

TEST_F(ListWindowScrollingTest, ThePanelIsNeverTallerThanTheWorkAreaAndItsRowsScroll) {
    const QRect workArea = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_TRUE(runQtUntil([&] { return panel->frame().size.height <= workArea.height(); }))
        << panel->frame().size.height;
    EXPECT_GT(panel->frame().size.height, workArea.height() * 0.8) << "uses the room there is";
    ASSERT_GT(scrollBar().maximum(), 0);
    EXPECT_EQ(scrollBar().value(), 0);

    // The wheel scrolls the rows under the pointer.
    QWidget* viewport = list->rowList()->viewport();
    const QPointF centre = viewport->rect().center();
    QWheelEvent wheel(centre, viewport->mapToGlobal(centre), QPoint(), QPoint(0, -240),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(viewport, &wheel);
    EXPECT_GT(scrollBar().value(), 0);

    // The list shrinking to fit lets the panel shrink with it.
    content = windowsContent({documents, downloads});
    changed.emit();
    ASSERT_TRUE(runQtUntil([&] { return panel->frame().size.height < workArea.height() / 2; }));
    EXPECT_EQ(scrollBar().maximum(), 0);
}

// The bar's handle is drawn where the bar takes clicks for it, in a
// colour that stands out from the bar's empty track in light and dark.
TEST_F(ListWindowScrollingTest, TheScrollBarsHandleStandsOutWhereItIsInLightAndDark) {
    auto& bar = dynamic_cast<platform::qt::PanelScrollBar&>(scrollBar());
    ASSERT_TRUE(bar.isVisible());
    const QRect handle = bar.part(QStyle::SC_ScrollBarSlider);
    ASSERT_LT(handle.height(), bar.height() / 2);
    const QPoint onHandle = handle.center();
    const QPoint onTrack(handle.center().x(), handle.bottom() + bar.height() / 4);

    for (const bool dark : {false, true}) {
        QPalette palette = bar.palette();
        if (dark) {
            palette.setColor(QPalette::Window, QColor(0x2B, 0x2B, 0x2D));
            palette.setColor(QPalette::WindowText, QColor(0xEC, 0xEC, 0xEC));
        }
        bar.setPalette(palette);
        QImage picture(bar.size(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(palette.color(QPalette::Window));
        bar.render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
        picture.save(QStringLiteral(TARNWICK_ARTIFACTS_DIR "/panel-scroll-bar-") +
                     (dark ? "dark.png" : "light.png"));
        const int handleLightness = picture.pixelColor(onHandle).lightness();
        const int trackLightness = picture.pixelColor(onTrack).lightness();
        EXPECT_GT(std::abs(handleLightness - trackLightness), 40) << (dark ? "dark" : "light");
        EXPECT_EQ(dark, handleLightness > trackLightness) << "ink is the text's colour";
    }

    // A press on the handle and a drag move the list.
    const QPoint down = onHandle;
    mouse(&bar, QEvent::MouseButtonPress, down, Qt::LeftButton);
    mouse(&bar, QEvent::MouseMove, down + QPoint(0, 40), Qt::LeftButton);
    mouse(&bar, QEvent::MouseButtonRelease, down + QPoint(0, 40), Qt::NoButton);
    EXPECT_GT(bar.value(), 0);
}

// A thousand windows cost what a screenful costs: widgets for the rows in
// sight and a few more, each drawing the window at its place, whichever
// way the list scrolls.
TEST_F(ListWindowScrollingTest, AThousandRowsHaveWidgetsOnlyForTheRowsInSight) {
    showWindows(1000);
    const int inSight = list->rowList()->viewport()->height() / rowPitch + 1;
    ASSERT_GT(inSight, 5);
    EXPECT_LE(rowWidgetsMade(), static_cast<std::size_t>(inSight + 10));
    EXPECT_EQ(wronglyDrawnRows(), "");
    EXPECT_EQ(list->rowList()->rows().front()->title()->text(), "Window 0");

    // A window retitled out of sight shows its new title once scrolled to.
    titles[700] = "Renamed while out of sight";
    sim.setTitle(handles[700], titles[700]);
    for (const int value : {700 * rowPitch, scrollBar().maximum(), 350 * rowPitch + 17, 0,
                            700 * rowPitch - 3 * rowPitch}) {
        scrollBar().setValue(value);
        EXPECT_EQ(wronglyDrawnRows(), "") << "scrolled to " << value;
        EXPECT_LE(rowWidgetsMade(), static_cast<std::size_t>(inSight + 10));
    }
    // Wider than the others, so the panel grows to show it whole.
    EXPECT_TRUE(runQtUntil([&] {
        const auto rows = list->rowList()->rows();
        return std::any_of(rows.begin(), rows.end(), [](const ListRowWidget* row) {
            return row->title()->text() == "Renamed while out of sight";
        });
    }));

    // Windows that go before the rows in sight move the others up by as
    // many places, and the list is as much shorter.
    handles.erase(handles.begin(), handles.begin() + 400);
    titles.erase(titles.begin(), titles.begin() + 400);
    content = windowsContent(handles);
    changed.emit();
    QCoreApplication::processEvents();
    EXPECT_EQ(wronglyDrawnRows(), "");
    EXPECT_LE(rowWidgetsMade(), static_cast<std::size_t>(inSight + 10));
    EXPECT_EQ(list->rowList()->widget()->height(),
              contentHeight(600) - contentHeight(1) + rowHeight);
}

TEST_F(ListWindowScrollingTest, DraggingARowScrollsTheListAndRaisesNothing) {
    auto* row = list->rowList()->rows().at(5);
    const QPoint start = row->rect().center();
    mouse(row, QEvent::MouseButtonPress, start, Qt::LeftButton);
    mouse(row, QEvent::MouseMove, start - QPoint(0, 60), Qt::LeftButton);
    EXPECT_EQ(scrollBar().value(), 60);
    mouse(row, QEvent::MouseButtonRelease, start - QPoint(0, 60), Qt::NoButton);
    EXPECT_TRUE(coordinator.actions().empty()) << "the drag ended in a click";

    // A click without a drag still raises the window.
    mouse(row, QEvent::MouseButtonPress, start, Qt::LeftButton);
    mouse(row, QEvent::MouseButtonRelease, start, Qt::NoButton);
    EXPECT_EQ(coordinator.actions(), std::vector<std::string>{"raiseWindow"});
}

}  // namespace
}  // namespace viewtest
