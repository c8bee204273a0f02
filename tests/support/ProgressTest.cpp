#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "support/MultiProgressTracker.h"
#include "support/SimpleProgress.h"

using quillbox::MultiProgressTracker;
using quillbox::ProgressProvider;
using quillbox::SimpleProgress;

TEST(Progress, SafeFractionKeepsZeroTotalsInRange) {
    EXPECT_EQ(quillbox::safeFraction(0, 0), 0.0);
    EXPECT_EQ(quillbox::safeFraction(5, 0), 1.0);
    EXPECT_EQ(quillbox::safeFraction(1, 4), 0.25);
}

TEST(Progress, SimpleProgressCapsTheCompletedCountAtTheTotal) {
    SimpleProgress progress(3, 10);
    int updates = 0;
    progress.onProgressUpdate([&](ProgressProvider& provider) {
        ++updates;
        EXPECT_EQ(&provider, &progress);
    });
    progress.updateCompletedValue(25);
    EXPECT_EQ(progress.completedUnitCount(), 10u);
    EXPECT_EQ(progress.fractionCompleted(), 1.0);
    progress.setTotalUnitCount(20);
    EXPECT_EQ(progress.completedUnitCount(), 10u);
    EXPECT_EQ(progress.fractionCompleted(), 0.5);
    // A lower total takes the completed count down with it.
    progress.setTotalUnitCount(4);
    EXPECT_EQ(progress.completedUnitCount(), 4u);
    EXPECT_EQ(updates, 3);
    EXPECT_EQ(progress.description(), "4/4 (100.0%)");
}

TEST(Progress, FractionIngressIgnoresWhatIsNotFiniteAndClampsTheRest) {
    SimpleProgress progress(SimpleProgress::FractionCompleted{0.29}, 100);
    EXPECT_EQ(progress.completedUnitCount(), 29u);
    progress.updateFractionCompleted(std::numeric_limits<double>::quiet_NaN());
    progress.updateFractionCompleted(std::numeric_limits<double>::infinity());
    EXPECT_EQ(progress.completedUnitCount(), 29u);
    progress.updateFractionCompleted(1.5);
    EXPECT_EQ(progress.completedUnitCount(), 100u);
    progress.updateFractionCompleted(-1);
    EXPECT_EQ(progress.completedUnitCount(), 0u);
    progress.markFinished();
    EXPECT_EQ(progress.fractionCompleted(), 1.0);
}

TEST(Progress, TheMirrorFollowsTheFractionAndSignalsChanges) {
    SimpleProgress progress(1, 4);
    auto& mirror = progress.foundationProgress();
    EXPECT_EQ(mirror.fractionCompleted(), 0.25);
    int changes = 0;
    auto subscription = mirror.changed.connect([&] { ++changes; });
    progress.updateCompletedValue(3);
    EXPECT_EQ(mirror.completedUnitCount(), mirror.totalUnitCount() * 3 / 4);
    progress.updateCompletedValue(3);
    EXPECT_EQ(changes, 1) << "an unchanged value doesn't signal";
}

TEST(Progress, TrackerWeighsChildrenByTheirContribution) {
    auto tracker = MultiProgressTracker::make();
    EXPECT_EQ(tracker->fractionCompleted(), 0.0);
    auto download = std::make_shared<SimpleProgress>(0, 1000);
    auto unpack = std::make_shared<SimpleProgress>(0, 3);
    tracker->addChildProgress(download, 30);
    tracker->addChildProgress(unpack);
    EXPECT_EQ(tracker->totalUnitCount(), 33u);
    EXPECT_EQ(download->parent(), tracker);

    std::vector<double> seen;
    tracker->onProgressUpdate([&](ProgressProvider& p) { seen.push_back(p.fractionCompleted()); });
    download->updateCompletedValue(500);  // half of 30
    EXPECT_EQ(tracker->completedUnitCount(), 15u);
    unpack->updateCompletedValue(1);  // a third of 3
    EXPECT_EQ(tracker->completedUnitCount(), 16u);
    download->updateCompletedValue(1);  // 0.03 of 30 units is cut to 0
    EXPECT_EQ(tracker->completedUnitCount(), 1u);
    EXPECT_EQ(seen.size(), 3u);
    EXPECT_EQ(tracker->foundationProgress().fractionCompleted(),
              std::floor(10'000.0 / 33) / 10'000.0);
}

TEST(Progress, AChildOfAnotherTrackerIsRefusedAndChangesNothing) {
    auto first = MultiProgressTracker::make();
    auto second = MultiProgressTracker::make();
    auto child = std::make_shared<SimpleProgress>(2, 4);
    first->addChildProgress(child);
    try {
        second->addChildProgress(child, 10);
        FAIL() << "no error";
    } catch (const MultiProgressTracker::Error& error) {
        EXPECT_EQ(error.errorCase(),
                  MultiProgressTracker::Error::Case::childProgressAlreadyHasParent);
    }
    EXPECT_EQ(second->totalUnitCount(), 0u);
    EXPECT_EQ(second->completedUnitCount(), 0u);
    EXPECT_EQ(child->parent(), first);
    child->updateCompletedValue(4);
    EXPECT_EQ(first->fractionCompleted(), 1.0);
    EXPECT_EQ(second->fractionCompleted(), 0.0);
}

TEST(Progress, TrackersNestAndAGoneTrackerFreesItsChild) {
    auto outer = MultiProgressTracker::make();
    auto inner = MultiProgressTracker::make();
    auto leaf = std::make_shared<SimpleProgress>(0, 2);
    inner->addChildProgress(leaf);
    outer->addChildProgress(inner, 100);
    leaf->updateCompletedValue(1);
    EXPECT_EQ(outer->completedUnitCount(), 50u);

    auto orphan = std::make_shared<SimpleProgress>(0, 1);
    MultiProgressTracker::make()->addChildProgress(orphan);
    EXPECT_FALSE(orphan->parent());
    outer->addChildProgress(orphan);
    orphan->markFinished();
    EXPECT_EQ(outer->completedUnitCount(), 51u);
}
