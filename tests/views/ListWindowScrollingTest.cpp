#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QScreen>
#include <QScrollBar>
#include <QWheelEvent>
#include <string>

#include "ListWindowFixture.h"
#include "QtTestSupport.h"
#include "views/QtContentView.h"
#include "views/QtToolkit.h"

namespace viewtest {
namespace {

using platform::qt::ListWindowRowList;

// A panel with more windows than its screen has room for.
class ListWindowScrollingTest : public ListWindowTest {
  protected:
    void SetUp() override {
        std::vector<platform::AXUIElementRef> handles;
        for (int i = 0; i < 120; ++i)
            handles.push_back(sim.addWindow(
                appPid, corvane::testing::SimWindowSetup::titled("Window " + std::to_string(i))));
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
