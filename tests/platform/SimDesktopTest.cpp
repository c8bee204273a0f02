#include <gtest/gtest.h>

#include <set>

#include "platform/sim/SimDesktop.h"

using namespace platform;
using platform::sim::SimDesktop;

TEST(SimDesktop, WorkspaceNotificationsWaitForTheGivenLoop) {
    sim::SimMainLoop externalLoop;
    SimDesktop desktop(externalLoop);
    ScopedInstall install(desktop.services());
    ASSERT_EQ(&platform::mainLoop(), &externalLoop);

    int launches = 0;
    platform::workspace().addObserverForName(WorkspaceNotification::didLaunchApplication,
                                             [&](const auto&) { ++launches; });
    sim::SimRunningApplication::Info info;
    info.processIdentifier = 900;
    desktop.workspace().launch(info);
    EXPECT_EQ(launches, 0);
    externalLoop.runUntilIdle();
    EXPECT_EQ(launches, 1);
}

TEST(SimDesktop, SampleApplicationsPutTheFileManagerInFrontAtItsSystemPath) {
    SimDesktop desktop;
    auto samples = desktop.populateSampleApplications();

    ASSERT_GE(samples.size(), 3u);
    EXPECT_EQ(samples.front()->bundleIdentifier(), "com.apple.finder");
    EXPECT_EQ(samples.front()->bundleURL(), "/System/Library/CoreServices/Finder.app");
    EXPECT_EQ(desktop.workspace().frontmostApplication(), samples.front());
    std::set<pid_t> pids{SimDesktop::ownProcessIdentifier};
    for (const auto& app : samples) {
        EXPECT_TRUE(pids.insert(app->processIdentifier()).second);
        if (app != samples.front()) {
            EXPECT_EQ(app->bundleURL()->parent_path(), "/Applications");
        }
    }
    EXPECT_EQ(desktop.workspace().runningApplications().size(), samples.size() + 1);
}
