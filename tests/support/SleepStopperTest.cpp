#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "platform/Platform.h"
#include "platform/sim/SimDesktop.h"
#include "support/SleepStopper.h"

using quillbox::SleepStopper::disableSleepUntilTokenRelease;
using quillbox::SleepStopper::isPreventingSleep;

namespace {

class SleepStopperTest : public ::testing::Test {
  protected:
    platform::sim::SimDesktop desktop;
    platform::ScopedInstall installed{desktop.services()};
    platform::sim::SimPowerManagement& power = desktop.powerManagement();
};

}  // namespace

TEST_F(SleepStopperTest, HoldsOneAssertionWhileAnyTokenLives) {
    EXPECT_FALSE(isPreventingSleep());
    auto first = disableSleepUntilTokenRelease();
    auto second = disableSleepUntilTokenRelease();
    EXPECT_NE(first->id(), second->id());
    EXPECT_TRUE(isPreventingSleep());
    ASSERT_EQ(power.heldAssertions().size(), 1u);
    EXPECT_EQ(power.heldAssertions().begin()->second, "NoDisplaySleepAssertion");

    first.reset();
    EXPECT_TRUE(isPreventingSleep());
    EXPECT_EQ(power.heldAssertions().size(), 1u);
    second.reset();
    EXPECT_FALSE(isPreventingSleep());
    EXPECT_TRUE(power.heldAssertions().empty());
    EXPECT_EQ(power.createdCount(), 1);

    auto again = disableSleepUntilTokenRelease();
    EXPECT_EQ(power.createdCount(), 2);
}

TEST_F(SleepStopperTest, TriesAgainWithTheNextTokenWhenTheSystemRefused) {
    power.setRefusesAssertions(true);
    auto refused = disableSleepUntilTokenRelease();
    EXPECT_FALSE(isPreventingSleep());
    power.setRefusesAssertions(false);
    auto granted = disableSleepUntilTokenRelease();
    EXPECT_TRUE(isPreventingSleep());
    granted.reset();
    EXPECT_TRUE(isPreventingSleep()) << "the first token still lives";
    refused.reset();
    EXPECT_FALSE(isPreventingSleep());
}

TEST_F(SleepStopperTest, TokensComingAndGoingOnManyThreadsLeaveNoAssertion) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int round = 0; round < 200; ++round)
                auto token = disableSleepUntilTokenRelease();
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_FALSE(isPreventingSleep());
    EXPECT_TRUE(power.heldAssertions().empty());
}
