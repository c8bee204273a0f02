#include <gtest/gtest.h>

#include "X11DesktopFixture.h"

namespace x11test {
namespace {

namespace axError = platform::axError;
using platform::AXObserverRef;

struct Heard {
    std::string notification;
    AXUIElementRef element;
};

void record(const AXObserverRef&, const AXUIElementRef& element, const std::string& notification,
            void* refcon) {
    static_cast<std::vector<Heard>*>(refcon)->push_back({notification, element});
}

class ObserversOnDesktopTest : public X11DesktopTest {
  protected:
    AXObserverRef observe(pid_t pid) {
        AXObserverRef observer;
        EXPECT_EQ(ax->observerCreate(pid, record, observer), axError::success);
        ax->runLoopAddSource(observer);
        return observer;
    }
    AXErrorCode subscribe(const AXObserverRef& observer, const AXUIElementRef& element,
                          const std::string& notification) {
        return ax->observerAddNotification(observer, element, notification, &heard);
    }
    // Waits for the notification about the element and drops what came before.
    bool hears(const std::string& notification, const AXUIElementRef& element) {
        return eventually([&] {
            for (auto it = heard.begin(); it != heard.end(); ++it) {
                if (it->notification == notification && platform::CFEqual(it->element, element)) {
                    heard.erase(heard.begin(), it + 1);
                    return true;
                }
            }
            return false;
        });
    }
    bool heardAny(const std::string& notification) {
        return std::any_of(heard.begin(), heard.end(),
                           [&](const Heard& h) { return h.notification == notification; });
    }

    std::vector<Heard> heard;
};

TEST_F(ObserversOnDesktopTest, WindowLifeArrivesAsNotifications) {
    TestClient client;
    client.create("first", "First");
    const auto first = windowTitled(client.pid(), "First");
    ASSERT_TRUE(first);
    // With the first window active, the new one becomes main only when raised.
    ASSERT_EQ(ax->performAction(first, "AXRaise"), axError::success);
    ASSERT_TRUE(eventually([&] { return flag(first, "AXFocused"); }));
    const auto application = ax->createApplication(client.pid());
    auto observer = observe(client.pid());
    ASSERT_EQ(subscribe(observer, application, "AXWindowCreated"), axError::success);
    ASSERT_EQ(subscribe(observer, application, "AXMainWindowChanged"), axError::success);
    ASSERT_EQ(subscribe(observer, application, "AXWindowMiniaturized"), axError::success);

    const auto id = client.create("watched", "Watched");
    const auto window =
        platform::x11::X11Element::make(platform::x11::X11ElementKey::forWindow(id), client.pid());
    ASSERT_TRUE(hears("AXWindowCreated", window));
    for (const char* name : {"AXUIElementDestroyed", "AXMoved", "AXTitleChanged"}) {
        ASSERT_EQ(subscribe(observer, window, name), axError::success) << name;
    }

    client.retitle("watched", "Renamed");
    EXPECT_TRUE(hears("AXTitleChanged", window));
    client.move("watched", 420, 310);
    EXPECT_TRUE(hears("AXMoved", window));
    ASSERT_EQ(ax->performAction(window, "AXRaise"), axError::success);
    EXPECT_TRUE(hears("AXMainWindowChanged", window));
    ASSERT_EQ(ax->setAttributeValue(window, "AXMinimized", true), axError::success);
    EXPECT_TRUE(hears("AXWindowMiniaturized", window));
    client.destroy("watched");
    EXPECT_TRUE(hears("AXUIElementDestroyed", window));
}

TEST_F(ObserversOnDesktopTest, RegistrationsAnswerWithTheirCodes) {
    TestClient client;
    client.create("window", "Subscribed");
    const auto window = windowTitled(client.pid(), "Subscribed");
    ASSERT_TRUE(window);
    auto observer = observe(client.pid());

    EXPECT_EQ(subscribe(observer, window, "AXMoved"), axError::success);
    EXPECT_EQ(subscribe(observer, window, "AXMoved"), axError::notificationAlreadyRegistered);
    EXPECT_EQ(ax->observerRemoveNotification(observer, window, "AXTitleChanged"),
              axError::notificationNotRegistered);
    EXPECT_EQ(ax->observerRemoveNotification(observer, window, "AXMoved"), axError::success);
    EXPECT_EQ(subscribe(observer, window, "AXWindowCreated"), axError::notificationUnsupported);
    EXPECT_EQ(subscribe(observer, window, "AXFocusedUIElementChanged"),
              axError::notificationUnsupported);

    TestClient other;
    EXPECT_EQ(subscribe(observer, ax->createApplication(other.pid()), "AXWindowCreated"),
              axError::illegalArgument);
    AXObserverRef unused;
    EXPECT_EQ(ax->observerCreate(-1, record, unused), axError::illegalArgument);

    client.destroy("window");
    ASSERT_TRUE(eventually([&] { return windowsOf(client.pid()).empty(); }));
    EXPECT_EQ(subscribe(observer, window, "AXMoved"), axError::invalidUIElement);
    EXPECT_EQ(ax->observerRemoveNotification(observer, window, "AXMoved"),
              axError::invalidUIElement);
}

TEST_F(ObserversOnDesktopTest, NothingArrivesOnceTheSourceIsOffTheLoop) {
    TestClient client;
    client.create("window", "Quiet");
    const auto window = windowTitled(client.pid(), "Quiet");
    ASSERT_TRUE(window);
    auto observer = observe(client.pid());
    ASSERT_EQ(subscribe(observer, window, "AXTitleChanged"), axError::success);

    ax->runLoopRemoveSource(observer);
    client.retitle("window", "Unheard");
    ASSERT_TRUE(eventually([&] { return text(window, "AXTitle") == "Unheard"; }));
    loop.runUntilIdle();
    EXPECT_FALSE(heardAny("AXTitleChanged"));

    ax->runLoopAddSource(observer);
    client.retitle("window", "Heard");
    EXPECT_TRUE(hears("AXTitleChanged", window));

    // A dropped observer hears nothing.
    observer.reset();
    client.retitle("window", "After the end");
    ASSERT_TRUE(eventually([&] { return text(window, "AXTitle") == "After the end"; }));
    loop.runUntilIdle();
    EXPECT_FALSE(heardAny("AXTitleChanged"));
}

}  // namespace
}  // namespace x11test
