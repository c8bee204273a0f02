#include <gtest/gtest.h>

#include <vector>

#include "platform/sim/SimApplication.h"
#include "platform/sim/SimDesktop.h"

using namespace platform;
using platform::sim::SimDesktop;

TEST(SimApplication, ActivatingTellsTheObserversOnceAndAProhibitedApplicationNeverActivates) {
    SimDesktop desktop;
    auto samples = desktop.populateSampleApplications();
    std::vector<RunningApplicationRef> told;
    auto subscription = desktop.workspace().observeFrontmostApplication(
        false, [&](const RunningApplicationRef& app) { told.push_back(app); });
    auto& app = desktop.application();

    app.activate();
    app.activate();  // already active: no change to report
    EXPECT_TRUE(app.isActive());
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told.front()->processIdentifier(), SimDesktop::ownProcessIdentifier);

    desktop.workspace().setFrontmostApplication(samples.at(1));
    EXPECT_FALSE(app.isActive());
    app.setActivationPolicy(ActivationPolicy::prohibited);
    app.activate();
    EXPECT_FALSE(app.isActive());
    EXPECT_EQ(told.size(), 2u);
}
