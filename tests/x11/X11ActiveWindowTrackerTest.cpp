#include <gtest/gtest.h>
#include <unistd.h>

#include <vector>

#include "platform/x11/X11ActiveWindowTracker.h"
#include "platform/x11/X11EventMonitors.h"
#include "x11/InputBackendTest.h"

namespace x11test {
namespace {

// Plays the window manager's part: windows with owners, and the root
// window's record of which one is active.
class FakeWindowManager {
  public:
    explicit FakeWindowManager(FakeInput& client) : client_(client) {
        activeWindow_ = client_.atom("_NET_ACTIVE_WINDOW");
        pidAtom_ = client_.atom("_NET_WM_PID");
    }

    xcb_window_t windowOf(std::uint32_t pid) {
        xcb_connection_t* c = client_.connection();
        const xcb_window_t window = xcb_generate_id(c);
        xcb_create_window(c, XCB_COPY_FROM_PARENT, window, client_.root(), 0, 0, 10, 10, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, pidAtom_, XCB_ATOM_CARDINAL, 32, 1,
                            &pid);
        return window;
    }

    void activate(xcb_window_t window) {
        xcb_change_property(client_.connection(), XCB_PROP_MODE_REPLACE, client_.root(),
                            activeWindow_, XCB_ATOM_WINDOW, 32, 1, &window);
        client_.sync();
    }

  private:
    FakeInput& client_;
    xcb_atom_t activeWindow_;
    xcb_atom_t pidAtom_;
};

class X11ActiveWindowTrackerTest : public InputBackendTest {};

TEST_F(X11ActiveWindowTrackerTest, ToldWhenTheActiveProcessChanges) {
    FakeWindowManager windowManager(*input);
    platform::x11::X11ActiveWindowTracker tracker(*source);
    EXPECT_FALSE(tracker.activeProcess());
    std::vector<std::optional<pid_t>> told;
    platform::Subscription subscription =
        tracker.observeActiveProcess([&](std::optional<pid_t> pid) { told.push_back(pid); });

    const xcb_window_t editor = windowManager.windowOf(4242);
    const xcb_window_t editorSecond = windowManager.windowOf(4242);
    windowManager.activate(editor);
    ASSERT_TRUE(waitFor([&] { return !told.empty(); }));
    EXPECT_EQ(told.back(), 4242);
    EXPECT_EQ(tracker.activeWindow(), editor);

    windowManager.activate(editorSecond);  // same process: nobody is told
    ASSERT_TRUE(waitFor([&] { return tracker.activeWindow() == editorSecond; }));
    EXPECT_EQ(told.size(), 1u);

    windowManager.activate(XCB_NONE);
    ASSERT_TRUE(waitFor([&] { return told.size() == 2; }));
    EXPECT_EQ(told.back(), std::nullopt);
}

TEST_F(X11ActiveWindowTrackerTest, LocalMonitorsHearKeysWhileOurWindowIsActive) {
    FakeWindowManager windowManager(*input);
    platform::x11::X11ActiveWindowTracker tracker(*source);
    auto rawInput = platform::x11::X11RawInput::create(*source, layouts.get());
    ASSERT_TRUE(rawInput);
    platform::x11::X11EventMonitors monitors(
        rawInput.get(), platform::x11::X11EventMonitors::activeProcessIs(tracker, ::getpid()));
    std::vector<std::string> heard;
    const auto mask = platform::eventMaskFor(platform::EventType::keyDown);
    monitors.addGlobalMonitor(mask, [&](const platform::Event&) { heard.push_back("global"); });
    monitors.addLocalMonitor(mask, [&](const platform::Event& event) {
        heard.push_back("local");
        return std::optional(event);
    });

    windowManager.activate(windowManager.windowOf(static_cast<std::uint32_t>(::getpid())));
    ASSERT_TRUE(waitFor([&] { return tracker.activeProcess() == ::getpid(); }));
    input->tap(38);
    input->sync();
    ASSERT_TRUE(waitFor([&] { return !heard.empty(); }));

    windowManager.activate(windowManager.windowOf(4242));
    ASSERT_TRUE(waitFor([&] { return tracker.activeProcess() == 4242; }));
    input->tap(38);
    input->sync();
    ASSERT_TRUE(waitFor([&] { return heard.size() >= 2; }));
    EXPECT_EQ(heard, (std::vector<std::string>{"local", "global"}));
}

}  // namespace
}  // namespace x11test
