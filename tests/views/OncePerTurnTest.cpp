// Work asked for many times in one turn of Qt's event loop runs once, in
// the next turn, and never after its owner is gone.
#include <gtest/gtest.h>

#include <memory>

#include "QtTestSupport.h"
#include "views/OncePerTurn.h"

namespace {

using platform::qt::OncePerTurn;

TEST(OncePerTurn, RunsOnceInTheNextTurnHoweverOftenAskedAndAgainWhenAskedWhileRunning) {
    int runs = 0;
    OncePerTurn once([&] {
        ++runs;
        if (runs == 1) {
            once.request();
            once.request();
        }
    });
    once.request();
    once.request();
    once.request();
    EXPECT_EQ(runs, 0) << "nothing runs in the turn that asks";

    ASSERT_TRUE(viewtest::runQtUntil([&] { return runs == 2; }));
    viewtest::runQtFor(50);
    EXPECT_EQ(runs, 2);
}

TEST(OncePerTurn, NothingRunsOnceTheHelperIsGone) {
    int runs = 0;
    auto once = std::make_unique<OncePerTurn>([&] { ++runs; });
    once->request();
    once.reset();
    viewtest::runQtFor(50);
    EXPECT_EQ(runs, 0);
}

}  // namespace
