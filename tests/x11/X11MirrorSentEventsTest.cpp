// What other clients can do to the mirror: send it events that claim
// anything, publish the window manager's root lists late, and change them
// in any way at all.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/sim/SimMainLoop.h"
#include "platform/x11/X11Accessibility.h"
#include "x11/InputTestDisplay.h"

namespace x11test {
namespace {

using Windows = std::vector<xcb_window_t>;

// What the mirror told of the windows' coming and going and of the main
// windows, in order.
struct RecordedChanges final : platform::x11::X11WindowMirrorListener {
    void windowJoined(xcb_window_t window, pid_t) override { joined.push_back(window); }
    void windowLeft(xcb_window_t window, pid_t) override { left.push_back(window); }
    void windowMoved(xcb_window_t, pid_t) override {}
    void windowRetitled(xcb_window_t, pid_t) override {}
    void windowMiniaturized(xcb_window_t, pid_t) override {}
    void mainWindowChanged(pid_t pid, xcb_window_t window) override {
        mains.emplace_back(pid, window);
    }

    Windows joined;
    Windows left;
    std::vector<std::pair<pid_t, xcb_window_t>> mains;
};

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
    // Publishes the list, and waits until the mirror has taken it in.
    void publishClientList(const Windows& windows, xcb_window_t marker) {
        setWindows(client.root(), "_NET_CLIENT_LIST", windows);
        ASSERT_TRUE(handledUpTo(marker, "after list " + std::to_string(++lists)));
    }
    bool listed(xcb_window_t window) {
        const auto list = ax->windowMirror().clientList();
        return std::find(list.begin(), list.end(), window) != list.end();
    }
    // Events are taken in order: once a later real change is seen, the
    // sent events before it have been handled, and a second later the root
    // lists they named have been read, however recently they were last.
    bool handledUpTo(xcb_window_t window, const std::string& title) {
        setTitle(window, title);
        const bool handled = loop.runUntil([&] {
            const auto* state = ax->windowMirror().window(window);
            return state && state->title() == title;
        });
        loop.advance(1);
        return handled;
    }

    InputTestDisplay display;
    int lists = 0;
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

TEST_F(X11MirrorSentEventsTest, AnyChangeOfTheClientListAnnouncesExactlyTheWindowsThatCameOrWent) {
    RecordedChanges changes;
    const auto token = ax->addWindowListener(changes);
    Windows made;
    for (int i = 0; i < 6; ++i)
        made.push_back(createWindow(static_cast<std::int16_t>(10 * i), 0, 50, 40));
    const xcb_window_t a = made[0], b = made[1], c = made[2], d = made[3], e = made[4], f = made[5];

    publishClientList({a, b, c, d, e}, a);
    EXPECT_EQ(changes.joined, (Windows{a, b, c, d, e}));
    EXPECT_EQ(ax->windowMirror().clientList(), (Windows{a, b, c, d, e}));

    // Reordered and shrunk by two in one change: only those two went.
    publishClientList({e, c, a}, a);
    EXPECT_EQ(changes.left, (Windows{b, d}));
    EXPECT_EQ(ax->windowMirror().clientList(), (Windows{e, c, a}));

    // One added at the end, with a listed window named twice.
    publishClientList({e, c, a, f, c}, a);
    EXPECT_EQ(changes.joined, (Windows{a, b, c, d, e, f}));
    EXPECT_EQ(ax->windowMirror().clientList(), (Windows{e, c, a, f}));

    // Two taken out of the middle and the front, the order of the rest kept.
    publishClientList({c, f}, c);
    EXPECT_EQ(changes.left, (Windows{b, d, e, a}));
    EXPECT_EQ(ax->windowMirror().clientList(), (Windows{c, f}));

    // Reordered alone, and then a window that went comes back among them.
    publishClientList({f, c}, c);
    publishClientList({f, b, c}, c);
    EXPECT_EQ(changes.left, (Windows{b, d, e, a}));
    EXPECT_EQ(changes.joined, (Windows{a, b, c, d, e, f, b}));
    EXPECT_EQ(ax->windowMirror().clientList(), (Windows{f, b, c}));

    setWindows(client.root(), "_NET_CLIENT_LIST", {});
    ASSERT_TRUE(loop.runUntil([&] { return ax->windowMirror().clientList().empty(); }));
    EXPECT_EQ(changes.left, (Windows{b, d, e, a, f, b, c}));
    ax->removeWindowListener(token);
}

TEST_F(X11MirrorSentEventsTest, TheMainWindowFollowsActivationAndFallsBackWhenItLeaves) {
    RecordedChanges changes;
    const auto token = ax->addWindowListener(changes);
    const xcb_window_t a = createWindow(0, 0, 50, 40);
    const xcb_window_t b = createWindow(60, 0, 50, 40);
    const xcb_window_t c = createWindow(120, 0, 50, 40);
    publishClientList({a, b, c}, a);
    const pid_t pid = ax->windowMirror().window(a)->pid;
    if (pid <= 0)
        GTEST_SKIP() << "the server doesn't tell which process made a window";
    EXPECT_EQ(ax->windowMirror().mainWindowOf(pid), a) << "none active: the first listed";

    for (const auto active : {b, c, a}) {
        setWindows(client.root(), "_NET_ACTIVE_WINDOW", {active});
        ASSERT_TRUE(handledUpTo(a, "active " + std::to_string(active)));
        EXPECT_EQ(ax->windowMirror().mainWindowOf(pid), active);
    }
    // Going, the main window hands over to the one active before it; any
    // other window going changes nothing.
    publishClientList({b, c}, b);
    EXPECT_EQ(ax->windowMirror().mainWindowOf(pid), c);
    publishClientList({c}, c);
    EXPECT_EQ(ax->windowMirror().mainWindowOf(pid), c);
    using Main = std::pair<pid_t, xcb_window_t>;
    EXPECT_EQ(changes.mains, (std::vector<Main>{{pid, a}, {pid, b}, {pid, c}, {pid, a}, {pid, c}}));
    ax->removeWindowListener(token);
}

// A window manager rewrites the lists several times for each window, so
// they are read at most once in a while; but nothing reads a list older
// than the last one the server announced.
TEST_F(X11MirrorSentEventsTest, AListChangedSoonAfterTheLastIsReadLaterButNeverMissedByAReader) {
    const xcb_window_t a = createWindow(0, 0, 50, 40);
    const xcb_window_t b = createWindow(60, 0, 50, 40);
    const xcb_window_t c = createWindow(120, 0, 50, 40);
    publishClientList({a}, a);
    const pid_t pid = ax->windowMirror().window(a)->pid;
    if (pid <= 0)
        GTEST_SKIP() << "the server doesn't tell which process made a window";
    const auto application = ax->createApplication(pid);
    const auto windowCount = [&] {
        std::int64_t count = -1;
        EXPECT_EQ(ax->getAttributeValueCount(application, "AXWindows", count),
                  platform::axError::success);
        return count;
    };

    // The first change after a quiet spell is read at once.
    setWindows(client.root(), "_NET_CLIENT_LIST", {a, b});
    ASSERT_TRUE(loop.runUntil([&] { return listed(b); }));
    // The next, right after, waits; a reader still gets it.
    setWindows(client.root(), "_NET_CLIENT_LIST", {a, b, c});
    setTitle(a, "after the second list");
    ASSERT_TRUE(loop.runUntil(
        [&] { return ax->windowMirror().window(a)->title() == "after the second list"; }));
    EXPECT_EQ(windowCount(), 3);
    EXPECT_TRUE(listed(c));

    // Unread, a waiting change is taken in when its interval ends.
    setWindows(client.root(), "_NET_CLIENT_LIST", {a, c});
    EXPECT_TRUE(loop.runUntil([&] { return !listed(b); }));
    EXPECT_EQ(windowCount(), 2);
}

}  // namespace
}  // namespace x11test
