#include "AccessibilityFixture.h"

namespace corvane::testing {
namespace {

using N = UIElement::AXNotification;
using Events = std::vector<std::string>;

// The simulated applications behave as real ones do when the program acts
// on their windows: the same state changes, the same notifications in order.
TEST_F(AccessibilityTest, SimulatedWindowsChangeAndNotifyAsRealOnesDo) {
    Events heard;
    auto observer = std::make_shared<Observer>(
        appPid, [&](Observer&, const std::shared_ptr<UIElement>& element, const N& name) {
            std::string title = "gone";
            try {
                title = element->attribute<std::string>("AXTitle").value_or("-");
            } catch (const AXError&) {
            }
            heard.push_back(name.rawValue + " " + title);
        });
    for (const auto& n : {N::mainWindowChanged, N::windowMiniaturized, N::uiElementDestroyed})
        observer->addNotification(n, *application());
    auto events = [&] {
        loop.runUntilIdle();
        return std::exchange(heard, {});
    };

    const auto front = window(documents);
    front->setAttribute("AXMinimized", CFValue(true));
    EXPECT_EQ(events(),
              (Events{"AXWindowMiniaturized Documents", "AXMainWindowChanged Downloads"}));
    EXPECT_TRUE(front->isMinimized());

    front->performAction("AXRaise");
    EXPECT_EQ(events(), (Events{"AXMainWindowChanged Documents"}));
    EXPECT_TRUE(front->isMain());
    EXPECT_TRUE(front->isMinimized());  // raising doesn't restore
    front->setAttribute("AXMinimized", CFValue(false));
    EXPECT_FALSE(front->isMinimized());
    EXPECT_TRUE(events().empty());

    front->closeButton()->performAction("AXPress");
    EXPECT_EQ(events(), (Events{"AXUIElementDestroyed gone", "AXMainWindowChanged Downloads"}));
    EXPECT_FALSE(sim.exists(documents));
    EXPECT_TRUE(window(downloads)->isMain());
}

}  // namespace
}  // namespace corvane::testing
