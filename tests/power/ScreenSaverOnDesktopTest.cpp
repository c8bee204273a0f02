#include <gtest/gtest.h>
#include <xcb/screensaver.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include "platform/Platform.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11ScreenSaverSuspension.h"
#include "support/SleepStopper.h"
#include "x11/InputTestDisplay.h"

using platform::x11::X11Connection;
using platform::x11::X11ScreenSaverSuspension;

namespace {

constexpr std::int16_t timeoutSeconds = 2;

// Watches the X server's screen saver from a connection of its own, with the
// timeout made short for the test and put back after it. The screen saver and
// its idle clock belong to the whole server, so each test runs on a server of
// its own: on a shared one, any test pressing keys or setting the timeout
// beside it would change what this one sees.
class ScreenSaverWatch {
  public:
    explicit ScreenSaverWatch(const std::string& display)
        : connection_(X11Connection::open(display.c_str())) {
        if (!connection_)
            return;
        auto* c = connection_->connection();
        saved_.reset(xcb_get_screen_saver_reply(c, xcb_get_screen_saver(c), nullptr));
        xcb_set_screen_saver(c, timeoutSeconds, 0, XCB_BLANKING_PREFERRED, XCB_EXPOSURES_DEFAULT);
        xcb_force_screen_saver(c, XCB_SCREEN_SAVER_RESET);
        xcb_flush(c);
    }
    ~ScreenSaverWatch() {
        if (!connection_)
            return;
        auto* c = connection_->connection();
        if (saved_) {
            xcb_set_screen_saver(c, saved_->timeout, saved_->interval, saved_->prefer_blanking,
                                 saved_->allow_exposures);
        }
        xcb_force_screen_saver(c, XCB_SCREEN_SAVER_RESET);
        xcb_flush(c);
    }

    bool isOpen() const { return connection_ != nullptr; }

    struct Info {
        bool on = false;
        std::uint32_t idleMilliseconds = 0;
    };
    Info info() const {
        auto* c = connection_->connection();
        std::unique_ptr<xcb_screensaver_query_info_reply_t, decltype(&std::free)> reply(
            xcb_screensaver_query_info_reply(c, xcb_screensaver_query_info(c, connection_->root()),
                                             nullptr),
            &std::free);
        if (!reply)
            return {};
        return {reply->state == XCB_SCREENSAVER_STATE_ON, reply->ms_since_user_input};
    }

    // Whether the screen saver came on before the server had been idle for
    // `idle` longer than its timeout; watched by the server's own idle clock.
    bool cameOnWithin(std::chrono::milliseconds idle) const {
        const auto limit = timeoutSeconds * 1000 + idle.count();
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (std::chrono::steady_clock::now() < deadline) {
            const auto now = info();
            if (now.on)
                return true;
            if (now.idleMilliseconds > limit)
                return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        return false;
    }

  private:
    std::unique_ptr<X11Connection> connection_;
    std::unique_ptr<xcb_get_screen_saver_reply_t, decltype(&std::free)> saved_{nullptr, &std::free};
};

}  // namespace

TEST(ScreenSaverOnDesktop, StaysOffWhileATokenLivesAndComesOnAfterItsRelease) {
    x11test::InputTestDisplay display;
    ASSERT_TRUE(display.started()) << "Xvfb did not start";
    auto powerConnection = X11Connection::open(display.name().c_str());
    ASSERT_TRUE(powerConnection);
    X11ScreenSaverSuspension suspension(powerConnection->connection());
    platform::Services services;
    services.powerManagement = &suspension;
    platform::ScopedInstall installed(services);
    ScreenSaverWatch watch(display.name());
    ASSERT_TRUE(watch.isOpen());

    auto token = quillbox::SleepStopper::disableSleepUntilTokenRelease();
    ASSERT_TRUE(quillbox::SleepStopper::isPreventingSleep());
    EXPECT_FALSE(watch.cameOnWithin(std::chrono::milliseconds(2000)));

    token.reset();
    EXPECT_FALSE(quillbox::SleepStopper::isPreventingSleep());
    EXPECT_TRUE(watch.cameOnWithin(std::chrono::seconds(10)));
}

TEST(ScreenSaverOnDesktop, SuspensionEndsWithTheLastAssertionOnly) {
    x11test::InputTestDisplay display;
    ASSERT_TRUE(display.started()) << "Xvfb did not start";
    auto powerConnection = X11Connection::open(display.name().c_str());
    ASSERT_TRUE(powerConnection);
    X11ScreenSaverSuspension suspension(powerConnection->connection());
    ScreenSaverWatch watch(display.name());
    const auto first = suspension.assertionCreateWithName("first");
    const auto second = suspension.assertionCreateWithName("second");
    ASSERT_TRUE(first && second);
    suspension.assertionRelease(*first);
    suspension.assertionRelease(*first);  // twice: the second time changes nothing
    EXPECT_FALSE(watch.cameOnWithin(std::chrono::milliseconds(1500)));
    suspension.assertionRelease(*second);
    EXPECT_TRUE(watch.cameOnWithin(std::chrono::seconds(10)));
}
