#include "app/ListWindowModelDesktop.h"
#include "listwindow/WindowActions.h"

namespace tarnwick::testing {
namespace {

using Strings = std::vector<std::string>;

class WindowActionsTest : public ListWindowModelDesktop {
  protected:
    WindowActionsTest() {
        model->selectApp(textEdit);
        changeCount = 0;
    }
    // A window of TextEdit, in front.
    ListWindowViewModel::WindowRef window(SimWindowSetup setup) {
        handle = addWindow(textEdit, std::move(setup));
        settle();
        changeCount = 0;
        return std::make_shared<corvane::Application::Window>(handle);
    }
    std::optional<bool> flag(const std::string& attribute) {
        const auto value = desktop.accessibility().value(handle, attribute);
        const auto* on = value ? value->get<bool>() : nullptr;
        return on ? std::optional(*on) : std::nullopt;
    }
    std::size_t presses() {
        const auto& performed = desktop.accessibility().performedActions();
        return static_cast<std::size_t>(
            std::count_if(performed.begin(), performed.end(),
                          [](const auto& p) { return p.second == "AXPress"; }));
    }
    void fail(SimAXCall call, const std::string& name) {
        desktop.accessibility().injectFault(
            call, SimAXFault::error(platform::axError::cannotComplete), nullptr, name);
    }

    WindowActions actions{*model};
    platform::AXUIElementRef handle;
};

TEST_F(WindowActionsTest, RaisingBringsTheAppForwardThenTheWindowWithoutARefresh) {
    const auto notesFile = model->app().axApp->windows()->back();
    actions.raiseWindow(notesFile);
    EXPECT_EQ(desktop.workspace().frontmostApplication(), textEdit);
    const auto& performed = desktop.accessibility().performedActions();
    ASSERT_FALSE(performed.empty());
    EXPECT_EQ(performed.back(), std::make_pair(notesFile->element(), std::string("AXRaise")));
    EXPECT_EQ(changeCount, 0);
}

TEST_F(WindowActionsTest, AWindowIsRaisedEvenWhenItsAppRefusesToComeForward) {
    const auto draft = window(SimWindowSetup::titled("Draft"));
    fail(SimAXCall::setAttributeValue, "AXFrontmost");
    actions.raiseWindow(draft);
    EXPECT_EQ(desktop.workspace().frontmostApplication(), finder);
    EXPECT_EQ(desktop.accessibility().performedActions().back().second, "AXRaise");

    desktop.accessibility().clearFaults();
    fail(SimAXCall::copyAttributeValue, "AXParent");
    actions.raiseWindow(draft);
    EXPECT_EQ(desktop.accessibility().performedActions().back().second, "AXRaise");
    EXPECT_TRUE(output.lines().empty());
}

TEST_F(WindowActionsTest, ClosingPressesTheButtonAndTheRefreshDropsTheRow) {
    const auto draft = window(SimWindowSetup::titled("Draft"));
    model->refreshWindows();
    ASSERT_EQ(titles().front(), "Draft");
    actions.closeWindow(draft);
    EXPECT_EQ(titles(), (Strings{"Letter.rtf", "Notes.txt"}));
}

TEST_F(WindowActionsTest, WithoutItsButtonsAWindowIsOnlyRefreshed) {
    auto setup = SimWindowSetup::titled("Palette");
    setup.closeButton.present = false;
    setup.zoomButton.present = false;
    const auto palette = window(setup);
    actions.closeWindow(palette);
    actions.toggleFullScreen(palette);
    EXPECT_EQ(titles().front(), "Palette");
    EXPECT_EQ(flag("AXFullScreen"), false);
    EXPECT_EQ(changeCount, 2);
    EXPECT_TRUE(output.lines().empty());
}

TEST_F(WindowActionsTest, MinimisingTogglesAndAFailedWriteIsPrinted) {
    const auto draft = window(SimWindowSetup::titled("Draft"));
    actions.toggleMinimized(draft);
    EXPECT_EQ(flag("AXMinimized"), true);
    actions.toggleMinimized(draft);
    EXPECT_EQ(flag("AXMinimized"), false);
    EXPECT_EQ(changeCount, 2);

    fail(SimAXCall::setAttributeValue, "AXMinimized");
    actions.toggleMinimized(draft);
    EXPECT_EQ(output.lines(), (Strings{"Error with minimizing: AXError.CannotComplete"}));
    EXPECT_EQ(changeCount, 3);
}

TEST_F(WindowActionsTest, FullScreenIsLeftByTheAttributeEnteredByTheZoomButtonAndFailuresPrinted) {
    auto setup = SimWindowSetup::titled("Movie");
    setup.fullScreen = true;
    const auto movie = window(setup);
    actions.toggleFullScreen(movie);
    EXPECT_EQ(flag("AXFullScreen"), false);
    EXPECT_EQ(presses(), 0u);

    actions.toggleFullScreen(movie);
    EXPECT_EQ(flag("AXFullScreen"), true);
    EXPECT_EQ(presses(), 1u);
    EXPECT_EQ(changeCount, 2);
    EXPECT_TRUE(output.lines().empty());

    // A failure of either step is printed and the list still refreshed.
    fail(SimAXCall::setAttributeValue, "AXFullScreen");
    actions.toggleFullScreen(movie);
    desktop.accessibility().clearFaults();
    desktop.accessibility().setFullScreen(handle, false);
    fail(SimAXCall::performAction, "AXPress");
    actions.toggleFullScreen(movie);
    EXPECT_EQ(output.lines(), (Strings{"Something not supported: AXError.CannotComplete",
                                       "Something not supported: AXError.CannotComplete"}));
    EXPECT_EQ(changeCount, 4);
}

}  // namespace
}  // namespace tarnwick::testing
