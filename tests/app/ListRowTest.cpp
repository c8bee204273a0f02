#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "RecordingRowCoordinator.h"
#include "accessibility/AccessibilityFixture.h"
#include "listwindow/ListWindowView.h"

namespace tarnwick::testing {
namespace {

namespace ax = platform::axError;
using corvane::testing::SimAXCall;
using corvane::testing::SimAXFault;
using corvane::testing::SimWindowSetup;
using ListRow = ListWindowView::ListRow;

// Rows over the simulated application's windows ("Documents" is main).
class ListRowTest : public corvane::testing::AccessibilityTest {
  protected:
    ListRow rowFor(const platform::AXUIElementRef& handle) {
        return ListRow(window(handle), coordinator, std::make_shared<ListRow::VM>());
    }
    platform::AXUIElementRef add(SimWindowSetup setup) {
        auto handle = sim.addWindow(appPid, std::move(setup));
        loop.runUntilIdle();
        return handle;
    }

    RecordingRowCoordinator coordinator;
};

std::vector<std::string> symbolsOf(const ListRow::Drawing& drawing) {
    std::vector<std::string> symbols;
    for (const auto& button : drawing.buttons)
        symbols.push_back(button.sfImage);
    return symbols;
}

std::vector<double> opacitiesOf(const ListRow::Drawing& drawing) {
    std::vector<double> opacities;
    for (const auto& button : drawing.buttons)
        opacities.push_back(button.opacity);
    return opacities;
}

TEST_F(ListRowTest, TheWindowsStateIsReadAtEveryDrawing) {
    const auto documentsRow = rowFor(documents);
    const auto downloadsRow = rowFor(downloads);
    auto drawing = documentsRow.draw();
    EXPECT_EQ(drawing.title, "Documents");
    EXPECT_TRUE(drawing.bold);
    EXPECT_FALSE(drawing.italic);
    EXPECT_EQ(drawing.opacity, 1.0);
    EXPECT_FALSE(downloadsRow.draw().bold);

    sim.raiseWindow(downloads);
    sim.setTitle(documents, "Documents 2");
    sim.setMinimized(documents, true);
    loop.runUntilIdle();
    EXPECT_TRUE(downloadsRow.draw().bold);
    drawing = documentsRow.draw();
    EXPECT_FALSE(drawing.bold);
    EXPECT_EQ(drawing.title, "Documents 2");
    EXPECT_TRUE(drawing.italic);
    EXPECT_EQ(drawing.opacity, 0.5);
}

TEST_F(ListRowTest, ButtonsShowPlainCirclesUntilHoveredAndEachAsksForItsOwnAction) {
    const auto row = rowFor(downloads);
    int changes = 0;
    auto subscription = row.vm().changed().connect([&] { ++changes; });

    auto drawing = row.draw();
    EXPECT_EQ(symbolsOf(drawing),
              (std::vector<std::string>{"circle.fill", "circle.fill", "circle.fill"}));
    EXPECT_EQ(drawing.buttons[0].color, ListRow::Color::red);
    EXPECT_EQ(drawing.buttons[1].color, ListRow::Color::yellow);
    EXPECT_EQ(drawing.buttons[2].color, ListRow::Color::green);
    EXPECT_EQ(drawing.buttons[2].accessibleName, "Full Screen");

    row.vm().setShowButtonIcons(true);
    row.vm().setShowButtonIcons(true);  // no change: no signal
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(symbolsOf(row.draw()), (std::vector<std::string>{"x.circle.fill", "minus.circle.fill",
                                                               "viewfinder.circle.fill"}));
    row.vm().setShowButtonIcons(false);
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(symbolsOf(row.draw())[0], "circle.fill");

    for (const auto& button : row.draw().buttons)
        button.action();
    EXPECT_EQ(coordinator.actions(),
              (std::vector<std::string>{"closeWindow", "toggleMinimized", "toggleFullScreen"}));
    for (const auto& call : coordinator.calls)
        EXPECT_EQ(call.window, row.window());
}

TEST_F(ListRowTest, MissingDisabledOrUnreadableButtonsAreFaintButStillAct) {
    auto setup = SimWindowSetup::titled("Sheet");
    setup.closeButton.present = false;
    setup.zoomButton.enabled = false;
    const auto handle = add(setup);
    const auto row = rowFor(handle);
    auto drawing = row.draw();
    EXPECT_EQ(opacitiesOf(drawing), (std::vector<double>{0.2, 1.0, 0.2}));
    EXPECT_EQ(drawing.buttons[0].color, ListRow::Color::red);
    drawing.buttons[2].action();
    EXPECT_EQ(coordinator.actions(), (std::vector<std::string>{"toggleFullScreen"}));

    // "AXEnabled" that fails, or that isn't a Boolean, counts as disabled.
    sim.injectFault(SimAXCall::copyAttributeValue, SimAXFault::error(ax::cannotComplete),
                    sim.button(handle, "AXMinimizeButton"), "AXEnabled");
    EXPECT_EQ(opacitiesOf(row.draw()), (std::vector<double>{0.2, 0.2, 0.2}));
    sim.clearFaults();
    sim.setAttribute(sim.button(handle, "AXMinimizeButton"), "AXEnabled", platform::CFValue("yes"));
    EXPECT_EQ(opacitiesOf(row.draw())[1], 0.2);
}

TEST_F(ListRowTest, AFailingTitleReadShowsUnknownWithLiveButtonsAndAVanishedWindowFallsBack) {
    sim.injectFault(SimAXCall::copyAttributeValue, SimAXFault::error(ax::cannotComplete), documents,
                    "AXTitle");
    const auto row = rowFor(documents);
    auto drawing = row.draw();
    EXPECT_EQ(drawing.title, "Unknown");
    EXPECT_TRUE(drawing.bold);
    EXPECT_EQ(opacitiesOf(drawing), (std::vector<double>{1.0, 1.0, 1.0}));
    drawing.buttons[0].action();
    EXPECT_EQ(coordinator.actions(), (std::vector<std::string>{"closeWindow"}));

    sim.removeWindow(documents);
    loop.runUntilIdle();
    drawing = row.draw();
    EXPECT_EQ(drawing.title, "Unknown");
    EXPECT_FALSE(drawing.bold);
    EXPECT_FALSE(drawing.italic);
    EXPECT_EQ(opacitiesOf(drawing), (std::vector<double>{0.2, 0.2, 0.2}));
}

}  // namespace
}  // namespace tarnwick::testing
