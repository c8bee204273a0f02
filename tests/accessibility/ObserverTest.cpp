#include "AccessibilityFixture.h"

namespace corvane::testing {
namespace {

namespace ax = platform::axError;
using N = UIElement::AXNotification;

class ObserverTest : public AccessibilityTest {
  protected:
    std::shared_ptr<Observer> makeObserver() {
        return std::make_shared<Observer>(
            appPid, [this](Observer&, const std::shared_ptr<UIElement>& element, const N& name) {
                received.emplace_back(element, name);
            });
    }

    std::vector<std::pair<std::shared_ptr<UIElement>, N>> received;
};
using ObserverDeathTest = ObserverTest;

TEST_F(ObserverTest, DeliversOnTheLoopOncePerEventWithAPlainElement) {
    auto observer = makeObserver();
    observer->addNotification(N::windowCreated, *application());
    observer->addNotification(N::moved, UIElement(documents));
    observer->addNotification(N::moved, UIElement(documents));
    const auto added = sim.addWindow(appPid, SimWindowSetup::titled("New"));
    sim.moveWindow(documents, {5, 5});
    EXPECT_TRUE(received.empty());
    loop.runUntilIdle();
    ASSERT_EQ(received.size(), 2u);
    EXPECT_EQ(*received[0].first, UIElement(added));
    EXPECT_EQ(received[0].second, N::windowCreated);
    EXPECT_EQ(typeid(*received[0].first), typeid(UIElement));
    EXPECT_EQ(received[1].second, N::moved);
    // The observer's application is made once.
    EXPECT_EQ(observer->application(), observer->application());
    EXPECT_EQ(*observer->application(), *application());
}

TEST_F(ObserverTest, RegistrationErrors) {
    auto observer = makeObserver();
    EXPECT_NO_THROW(observer->removeNotification(N::moved, UIElement(documents)));
    try {
        observer->addNotification(N("NotANotification"), UIElement(documents));
        FAIL() << "no error";
    } catch (const AXError& error) {
        EXPECT_EQ(error, AXError::notificationUnsupported);
    }
    sim.removeWindow(downloads);
    EXPECT_THROW(observer->addNotification(N::moved, UIElement(downloads)), AXError);
    EXPECT_THROW(observer->removeNotification(N::moved, UIElement(downloads)), AXError);

    sim.injectFault(SimAXCall::observerCreate, SimAXFault::error(ax::cannotComplete));
    EXPECT_THROW(makeObserver(), AXError);
}

TEST_F(ObserverTest, StoppedAndDroppedObserversDeliverNothing) {
    auto observer = makeObserver();
    observer->addNotification(N::titleChanged, UIElement(documents));
    observer->stop();
    sim.setTitle(documents, "Renamed");
    loop.runUntilIdle();
    EXPECT_TRUE(received.empty());

    observer->start();
    sim.setTitle(documents, "Renamed again");
    loop.runUntilIdle();
    EXPECT_EQ(received.size(), 1u);

    sim.setTitle(documents, "Once more");  // queued, then the observer goes
    observer.reset();
    loop.runUntilIdle();
    EXPECT_EQ(received.size(), 1u);
    EXPECT_EQ(sim.liveObserverCount(), 0u);
}

TEST_F(ObserverTest, ACallbackMayDropItsOwnObserver) {
    std::shared_ptr<Observer> observer;
    int calls = 0;
    observer = std::make_shared<Observer>(
        appPid, [&](Observer& self, const std::shared_ptr<UIElement>&, const N&) {
            ++calls;
            observer.reset();
            EXPECT_EQ(self.pid(), appPid);  // still alive for the length of the call
        });
    observer->addNotification(N::moved, UIElement(documents));
    sim.moveWindow(documents, {1, 1});
    sim.moveWindow(documents, {2, 2});
    loop.runUntilIdle();
    EXPECT_EQ(calls, 1);
}

TEST_F(ObserverTest, InformationCallbackGetsTheDictionary) {
    std::optional<CFValue::Dictionary> info;
    auto observer = std::make_shared<Observer>(
        appPid, [&](Observer&, const std::shared_ptr<UIElement>&, const N&,
                    const Observer::Info& given) { info = given.value(); });
    observer->addNotification(N::valueChanged, UIElement(documents));
    sim.postNotification(documents, "AXValueChanged", {{"AXValue", CFValue(3)}});
    loop.runUntilIdle();
    ASSERT_TRUE(info);
    EXPECT_EQ(*info->at("AXValue").get<std::int64_t>(), 3);
}

TEST_F(ObserverDeathTest, NotificationWithoutUserDataStops) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto observer = makeObserver();
    sim.observerAddNotification(observer->axObserver(), documents, "AXMoved", nullptr);
    sim.moveWindow(documents, {1, 1});
    EXPECT_DEATH(loop.runUntilIdle(), "userData should be an Corvane.Observer");
}

}  // namespace
}  // namespace corvane::testing
