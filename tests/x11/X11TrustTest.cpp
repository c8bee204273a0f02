// The process trust test on X11: true exactly while a window manager
// answers, asked of the server until one does, then followed by the
// events of its check window.
#include <gtest/gtest.h>

#include <string>

#include "platform/sim/SimMainLoop.h"
#include "platform/x11/X11Accessibility.h"
#include "x11/InputTestDisplay.h"

namespace x11test {
namespace {

// Plays the part of a window manager's check window on the display.
class CheckWindow {
  public:
    explicit CheckWindow(FakeInput& client) : client_(client) {
        auto* c = client_.connection();
        window_ = xcb_generate_id(c);
        const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
        xcb_create_window(c, XCB_COPY_FROM_PARENT, window_, screen->root, -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        setWindowProperty(screen->root, "_NET_SUPPORTING_WM_CHECK", window_);
        setWindowProperty(window_, "_NET_SUPPORTING_WM_CHECK", window_);
        client_.sync();
    }

    void name(const std::string& text) {
        auto* c = client_.connection();
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, window_, client_.atom("_NET_WM_NAME"),
                            client_.atom("UTF8_STRING"), 8, static_cast<std::uint32_t>(text.size()),
                            text.data());
        client_.sync();
    }

    // The root's property stays behind, naming a window that is gone.
    void destroy() {
        xcb_destroy_window(client_.connection(), window_);
        client_.sync();
    }

  private:
    void setWindowProperty(xcb_window_t on, const char* name, xcb_window_t value) {
        xcb_change_property(client_.connection(), XCB_PROP_MODE_REPLACE, on, client_.atom(name),
                            XCB_ATOM_WINDOW, 32, 1, &value);
    }

    FakeInput& client_;
    xcb_window_t window_ = XCB_NONE;
};

TEST(X11TrustTest, TrustedExactlyWhileTheCheckWindowLivesAndCarriesItsName) {
    InputTestDisplay display;
    ASSERT_TRUE(display.started()) << "Xvfb did not start";
    platform::sim::SimMainLoop loop;
    auto ax = platform::x11::X11Accessibility::open(loop, display.name().c_str());
    ASSERT_TRUE(ax);
    const platform::CFValue::Dictionary withPrompt{{"AXTrustedCheckOptionPrompt", true}};
    const platform::CFValue::Dictionary withoutPrompt{{"AXTrustedCheckOptionPrompt", false}};
    EXPECT_FALSE(ax->isProcessTrustedWithOptions(withoutPrompt)) << "no window manager yet";
    EXPECT_FALSE(ax->isProcessTrustedWithOptions(withPrompt));

    FakeInput client(display.name());
    CheckWindow check(client);
    EXPECT_FALSE(ax->isProcessTrustedWithOptions(withoutPrompt)) << "a check window with no name";
    // No event has been taken in: the answer comes from the server.
    check.name("Openbox");
    EXPECT_TRUE(ax->isProcessTrustedWithOptions(withoutPrompt));
    EXPECT_TRUE(ax->isProcessTrustedWithOptions(withPrompt));

    // Once it answered, its end is seen by the events it brings.
    check.destroy();
    EXPECT_TRUE(loop.runUntil([&] { return !ax->isProcessTrustedWithOptions(withoutPrompt); }, 5))
        << "a window manager that died";
    // The errors of asking about a window that is gone are taken off quietly.
    loop.runUntilIdle();
    EXPECT_TRUE(ax->isConnected());
}

}  // namespace
}  // namespace x11test
