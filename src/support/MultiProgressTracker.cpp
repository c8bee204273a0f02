#include "support/MultiProgressTracker.h"

namespace quillbox {

std::shared_ptr<MultiProgressTracker> MultiProgressTracker::make() {
    return std::make_shared<MultiProgressTracker>(PassKey{});
}

void MultiProgressTracker::addChildProgress(const std::shared_ptr<ProgressProvider>& child,
                                            std::optional<std::uint64_t> contributionUnits) {
    std::lock_guard blocks(blockLock_);
    if (!child->adoptParent(weak_from_this()))
        throw Error(Error::Case::childProgressAlreadyHasParent);
    const auto contribution = contributionUnits.value_or(child->totalUnitCount());
    {
        std::lock_guard values(lock_);
        totalUnitCount_ += contribution;
    }
    children_.push_back(Child{child, contribution});
    child->onProgressUpdate([weak = weak_from_this()](ProgressProvider&) {
        if (auto tracker = weak.lock())
            tracker->childDidUpdate();
    });
    recomputeLocked();
}

void MultiProgressTracker::childDidUpdate() {
    std::lock_guard blocks(blockLock_);
    recomputeLocked();
}

// Each child adds its fraction of its contribution, cut to whole units.
void MultiProgressTracker::recomputeLocked() {
    {
        std::lock_guard values(lock_);
        std::uint64_t completed = 0;
        for (const auto& child : children_) {
            completed += static_cast<std::uint64_t>(child.provider->fractionCompleted() *
                                                    static_cast<double>(child.contributionUnits));
        }
        storeCounts(completed, totalUnitCount_);
    }
    publishLocked();
}

}  // namespace quillbox
