// "Relaunch App" starts the helper from the bundle with this process's id
// and the bundle's path, then terminates; a helper that can't start leaves
// one line and a running program.
#include <gtest/gtest.h>

#include "app/SpineTestSupport.h"
#include "firstrun/PermissionRequestView.h"
#include "services/Restarter.h"
#include "support/StandardOutput.h"

namespace {

using Launch = platform::sim::SimProcessLauncher::Launch;

class RestarterTest : public ::testing::Test, protected spine::DesktopFixture {
  protected:
    const std::vector<Launch>& launches() { return desktop.processLauncher().launches(); }
    quillbox::CapturedOutput output;
};

}  // namespace

TEST_F(RestarterTest, TheRelaunchButtonStartsTheHelperWithOurIdAndBundleThenTerminates) {
    class NoCoordinator final : public tarnwick::PermissionRequestView::Coordinator {};
    NoCoordinator coordinator;
    desktop.accessibility().setProcessTrusted(false);
    tarnwick::PermissionRequestView view(tarnwick::PermissionRequestViewModel::make(), coordinator);
    view.relaunch();

    ASSERT_EQ(launches().size(), 1u);
    EXPECT_EQ(launches()[0].executable,
              "/Applications/Tarnwick.app/Contents/MacOS/AppRestartHelper");
    const auto pid = std::to_string(desktop.processLauncher().processIdentifier());
    EXPECT_EQ(launches()[0].arguments, (std::vector<std::string>{"--watch-pid", pid, "--app",
                                                                 "/Applications/Tarnwick.app"}));
    EXPECT_EQ(desktop.application().terminateCount(), 1u);
    EXPECT_TRUE(output.lines().empty());
}

TEST_F(RestarterTest, ABundlePathWithBlanksReachesTheHelperAsOneArgument) {
    desktop.bundles().setMainBundle(std::make_shared<platform::sim::SimBundle>(
        "/home/ada/My Apps/Tarnwick Beta.app", "harrowmere.Tarnwick", std::nullopt));
    tarnwick::Restarter::relaunch();
    ASSERT_EQ(launches().size(), 1u);
    EXPECT_EQ(launches()[0].executable,
              "/home/ada/My Apps/Tarnwick Beta.app/Contents/MacOS/AppRestartHelper");
    EXPECT_EQ(launches()[0].arguments.size(), 4u);
    EXPECT_EQ(launches()[0].arguments[3], "/home/ada/My Apps/Tarnwick Beta.app");
}

TEST_F(RestarterTest, AHelperThatCannotStartIsOneLineAndTheProgramKeepsRunning) {
    desktop.processLauncher().setFailure("AppRestartHelper: No such file or directory");
    tarnwick::Restarter::relaunch();
    EXPECT_EQ(output.lines(), (std::vector<std::string>{
                                  "Failed to launch restart helper: AppRestartHelper: No such "
                                  "file or directory"}));
    EXPECT_EQ(desktop.application().terminateCount(), 0u);

    // The user can press again.
    desktop.processLauncher().setFailure({});
    tarnwick::Restarter::relaunch();
    EXPECT_EQ(desktop.application().terminateCount(), 1u);
}
