// Launch at login over the platform's login item service: one change at a
// time, a failure as one printed line, and the platform's status as the
// only truth.
#include <gtest/gtest.h>

#include "platform/Platform.h"
#include "platform/sim/SimDesktop.h"
#include "services/LoginLaunchController.h"
#include "support/StandardOutput.h"

using Status = platform::LoginItemService::Status;
using tarnwick::LoginLaunchController;

namespace {

class LoginLaunchControllerTest : public ::testing::Test {
  protected:
    platform::sim::SimDesktop desktop;
    platform::ScopedInstall install{desktop.services()};
    platform::sim::SimLoginItemService& service = desktop.loginItemService();
    std::shared_ptr<LoginLaunchController> controller = LoginLaunchController::make();
    quillbox::CapturedOutput output;
};

}  // namespace

TEST_F(LoginLaunchControllerTest, EnablingRegistersAtOnceAndDisablingFinishesOnALaterTurn) {
    std::vector<bool> thinking;
    const auto subscription =
        controller->changed().connect([&] { thinking.push_back(controller->isThinking()); });
    bool done = false;
    controller->setEnabled(true, [&] { done = true; });
    EXPECT_TRUE(done);
    EXPECT_TRUE(controller->isEnabled());
    EXPECT_EQ(thinking, (std::vector<bool>{true, false}));

    done = false;
    controller->setEnabled(false, [&] { done = true; });
    EXPECT_TRUE(controller->isThinking());
    EXPECT_TRUE(controller->isEnabled()) << "not before the service has answered";
    desktop.loop().runUntilIdle();
    EXPECT_TRUE(done);
    EXPECT_FALSE(controller->isThinking());
    EXPECT_FALSE(controller->isEnabled());
    EXPECT_EQ(service.calls(), (std::vector<std::string>{"register", "unregister"}));
    EXPECT_TRUE(output.lines().empty());
}

TEST_F(LoginLaunchControllerTest, EnablingWhileADisablingIsInFlightIsDroppedAndTheDisablingShows) {
    controller->setEnabled(true);
    controller->setEnabled(false);
    bool dropped = false;
    controller->setEnabled(true, [&] { dropped = true; });
    EXPECT_TRUE(dropped) << "a dropped change ends at once";
    desktop.loop().runUntilIdle();
    EXPECT_EQ(service.calls(), (std::vector<std::string>{"register", "unregister"}));
    EXPECT_FALSE(controller->isEnabled());
}

TEST_F(LoginLaunchControllerTest, AFailureIsOneLineAndTheSwitchShowsThePlatformsState) {
    service.setFailure("The operation couldn't be completed.");
    controller->setEnabled(true);
    EXPECT_EQ(output.lines(), (std::vector<std::string>{"Error setting launch at login: The "
                                                        "operation couldn't be completed."}));
    EXPECT_FALSE(controller->isThinking());
    EXPECT_FALSE(controller->isEnabled());

    service.setStatus(Status::enabled);
    controller->setEnabled(false);
    desktop.loop().runUntilIdle();
    EXPECT_EQ(output.lines().size(), 2u);
    EXPECT_FALSE(controller->isThinking());
    EXPECT_TRUE(controller->isEnabled());
}

TEST_F(LoginLaunchControllerTest, AStatusOtherThanEnabledAfterASuccessfulRegistrationReadsAsOff) {
    for (const auto status : {Status::requiresApproval, Status::notFound, Status::notRegistered}) {
        service.setStatusAfterRegistering(status);
        controller->setEnabled(true);
        EXPECT_FALSE(controller->isEnabled());
    }
    EXPECT_TRUE(output.lines().empty());
}
