#include <gtest/gtest.h>

#include <vector>

#include "platform/sim/SimApplication.h"
#include "platform/sim/SimDesktop.h"

using namespace platform;
using platform::sim::SimDesktop;

TEST(SimApplication, ActivatingBringsOurEntryFrontAndTellsTheObservers) {
    SimDesktop desktop;
    auto samples = desktop.populateSampleApplications();
    std::vector<RunningApplicationRef> told;
    auto subscription = desktop.workspace().observeFrontmostApplication(
        false, [&](const RunningApplicationRef& app) { told.push_back(app); });

    EXPECT_FALSE(desktop.application().isActive());
    desktop.application().activate();
    EXPECT_TRUE(desktop.application().isActive());
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told.front()->processIdentifier(), SimDesktop::ownProcessIdentifier);

    desktop.application().activate();  // already active: no change to report
    EXPECT_EQ(told.size(), 1u);

    desktop.workspace().setFrontmostApplication(samples.at(1));
    EXPECT_FALSE(desktop.application().isActive());
}

TEST(SimApplication, PolicyIsRecordedAndAProhibitedApplicationNeverActivates) {
    SimDesktop desktop;
    auto& app = desktop.application();
    EXPECT_EQ(app.activationPolicy(), ActivationPolicy::regular);

    EXPECT_TRUE(app.setActivationPolicy(ActivationPolicy::accessory));
    EXPECT_EQ(desktop.ownApplication()->activationPolicy(), ActivationPolicy::accessory);
    app.setActivationPolicy(ActivationPolicy::prohibited);
    app.activate();
    EXPECT_FALSE(app.isActive());
    EXPECT_EQ(app.activateCount(), 1u);
    EXPECT_EQ(app.policyHistory(), (std::vector<ActivationPolicy>{ActivationPolicy::accessory,
                                                                  ActivationPolicy::prohibited}));
}

TEST(SimApplication, TerminateIsRecordedAndRunsTheHandler) {
    SimDesktop desktop;
    int quits = 0;
    desktop.application().setTerminateHandler([&] { ++quits; });
    desktop.application().terminate();
    EXPECT_TRUE(desktop.application().isTerminated());
    EXPECT_EQ(quits, 1);
}
