// What other clients can do to the mirror: send it events that claim
// anything, and publish the window manager's root lists late.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "platform/sim/SimMainLoop.h"
#include "platform/x11/X11Accessibility.h"
#include "x11/InputTestDisplay.h"

namespace x11test {
namespace {

class X11MirrorSentEventsTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(display.started()) << "Xvfb did not start";
        ax = platform::x11::X11Accessibility::open(loop, display.name().c_str());
        ASSERT_TRUE(ax);
    }

    xcb_window_t createWindow(std::int16_t x, std::int16_t y, std::uint16_t width,
                              std::uint16_t height) {
        auto* c = client.connection();
        const xcb_window_t window = xcb_generate_id(c);
        xcb_create_window(c, XCB_COPY_FROM_PARENT, window, client.root(), x, y, width, height, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_map_window(c, window);
        return window;
    }
    void setWindows(xcb_window_t on, const char* property,
                    const std::vector<xcb_window_t>& windows) {
        xcb_change_property(client.connection(), XCB_PROP_MODE_REPLACE, on, client.atom(property),
                            XCB_ATOM_WINDOW, 32, static_cast<std::uint32_t>(windows.size()),
                            windows.data());
        client.sync();
    }
    void setTitle(xcb_window_t window, const std::string& title) {
        xcb_change_property(client.connection(), XCB_PROP_MODE_REPLACE, window,
                            client.atom("_NET_WM_NAME"), client.atom("UTF8_STRING"), 8,
                            static_cast<std::uint32_t>(title.size()), title.data());
        client.sync();
    }
    // Sends the event to the window as any client may, for those that
    // follow its structure.
    template <typename Event>
    void send(xcb_window_t window, Event event, std::uint8_t type) {
        event.response_type = type;
        xcb_send_event(client.connection(), 0, window, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&event));
        client.sync();
    }
    bool listed(xcb_window_t window) {
        const auto list = ax->windowMirror().clientList();
        return std::find(list.begin(), list.end(), window) != list.end();
    }
    // Events are taken in order: once a later real change is seen, the
    // sent events before it have been handled.
    bool handledUpTo(xcb_window_t window, const std::string& title) {
        setTitle(window, title);
        return loop.runUntil([&] {
            const auto* state = ax->windowMirror().window(window);
            return state && state->title() == title;
        });
    }

    InputTestDisplay display;
    platform::sim::SimMainLoop loop;
    std::unique_ptr<platform::x11::X11Accessibility> ax;
    FakeInput client{display.name()};
};

TEST_F(X11MirrorSentEventsTest, ListsPublishedAfterTheStartAreFollowedAndSentEventsChangeNothing) {
    // The window manager comes after the program: its lists appear later.
    const xcb_window_t check = createWindow(-1, -1, 1, 1);
    const xcb_window_t window = createWindow(10, 20, 100, 80);
    setWindows(check, "_NET_SUPPORTING_WM_CHECK", {check});
    setWindows(client.root(), "_NET_SUPPORTING_WM_CHECK", {check});
    setTitle(check, "Late Manager");
    setWindows(client.root(), "_NET_CLIENT_LIST", {window});
    ASSERT_TRUE(loop.runUntil([&] { return listed(window); }));
    const platform::CFValue::Dictionary noPrompt{{"AXTrustedCheckOptionPrompt", false}};
    EXPECT_TRUE(ax->isProcessTrustedWithOptions(noPrompt));

    // Claims, each sent by a client that isn't the server: the window and the
    // check window destroyed, the window moved and shrunk, the screen resized.
    for (const auto target : {window, check}) {
        xcb_destroy_notify_event_t destroyed{};
        destroyed.event = destroyed.window = target;
        send(target, destroyed, XCB_DESTROY_NOTIFY);
    }
    xcb_configure_notify_event_t moved{};
    moved.event = moved.window = window;
    moved.x = 900;
    moved.y = 700;
    moved.width = moved.height = 3;
    send(window, moved, XCB_CONFIGURE_NOTIFY);
    ASSERT_TRUE(handledUpTo(window, "after the claims"));

    EXPECT_TRUE(listed(window));
    const auto* state = ax->windowMirror().window(window);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->x, 10);
    EXPECT_EQ(state->y, 20);
    EXPECT_EQ(state->width, 100u);
    EXPECT_EQ(state->height, 80u);
    EXPECT_TRUE(ax->isProcessTrustedWithOptions(noPrompt));

    // The real end is still seen.
    xcb_destroy_window(client.connection(), window);
    client.sync();
    EXPECT_TRUE(loop.runUntil([&] { return !listed(window); }));
}

}  // namespace
}  // namespace x11test
