#include <gtest/gtest.h>

#include "SpineTestSupport.h"
#include "app/ActivationController.h"
#include "settings/SettingsKeys.h"
#include "support/StandardOutput.h"

using platform::ActivationPolicy;
using tarnwick::ActivationController;

namespace {

class ActivationControllerTest : public ::testing::Test, protected spine::DesktopFixture {
  protected:
    std::shared_ptr<platform::Window> window(const std::string& title) {
        auto made = platform::toolkit().makeWindow(4099);
        made->setTitle(title);
        return made;
    }

    ActivationController controller;
    quillbox::CapturedOutput output;
};

}  // namespace

TEST_F(ActivationControllerTest, ARightPolicyIsLeftAloneAndAStoredOneIsAppliedAsItStands) {
    desktop.application().setActivationPolicy(ActivationPolicy::accessory);
    output.clear();
    controller.updateActivationPolicy();
    EXPECT_TRUE(output.lines().empty());

    quillbox::DefaultsManager::shared().setValue(ActivationPolicy::prohibited,
                                                 tarnwick::activationPolicy);
    controller.updateActivationPolicy();
    EXPECT_EQ(output.lines(),
              std::vector<std::string>{"[Activation] setting policy .accessory -> .prohibited"});
    EXPECT_EQ(desktop.application().activationPolicy(), ActivationPolicy::prohibited);

    // A stored value out of range is applied too, and printed in its unknown form.
    quillbox::DefaultsManager::shared().setValue(static_cast<ActivationPolicy>(9),
                                                 tarnwick::activationPolicy);
    output.clear();
    controller.updateActivationPolicy();
    EXPECT_EQ(output.lines(),
              std::vector<std::string>{"[Activation] setting policy .prohibited -> unknown - "
                                       "update 13:Tarnwick/ActivationPolicy"});
}

TEST_F(ActivationControllerTest, ANewWindowActivatesOneTurnLaterAndAHeldOneAtOnce) {
    desktop.application().setActivationPolicy(ActivationPolicy::accessory);
    auto settings = window("Settings");
    controller.bringToFront(settings);
    EXPECT_EQ(output.lines(),
              (std::vector<std::string>{"[Activation] bringToFront: Settings (open: 0)",
                                        "[Activation] setting policy .accessory -> .regular"}));
    EXPECT_EQ(desktop.application().activateCount(), 0u);
    EXPECT_TRUE(desktop.toolkit().keyWindow() == settings);  // ordered front first

    desktop.loop().runUntilIdle();
    EXPECT_EQ(desktop.application().activateCount(), 1u);
    EXPECT_EQ(output.lines().back(), "[Activation] isActive after activate(): true");

    output.clear();
    controller.bringToFront(settings);
    EXPECT_EQ(output.lines(),
              std::vector<std::string>{"[Activation] bringToFront: Settings (open: 1)"});
    EXPECT_EQ(desktop.application().activateCount(), 2u);
    EXPECT_EQ(controller.openWindows().size(), 1u);
    EXPECT_EQ(desktop.loop().pendingTaskCount(), 0u);
}

TEST_F(ActivationControllerTest, ClosingTheLastManagedWindowRestoresTheStoredPolicy) {
    desktop.application().setActivationPolicy(ActivationPolicy::accessory);
    auto settings = window("Settings");
    auto about = window("About Tarnwick");
    controller.bringToFront(settings);
    controller.bringToFront(about);
    ASSERT_EQ(output.lines().size(), 3u);
    EXPECT_EQ(output.lines()[2], "[Activation] bringToFront: About Tarnwick (open: 1)");

    controller.removeOpenWindow(settings.get());
    controller.updateActivationPolicy();
    EXPECT_EQ(desktop.application().activationPolicy(), ActivationPolicy::regular);
    controller.removeOpenWindow(about.get());
    controller.updateActivationPolicy();
    EXPECT_EQ(desktop.application().activationPolicy(), ActivationPolicy::accessory);
}
