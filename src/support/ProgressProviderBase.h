#pragma once

#include <mutex>
#include <vector>

#include "support/ProgressProvider.h"

namespace quillbox::detail {

// The values, locks, parent, mirror and update blocks that every progress
// provider keeps. `lock_` guards the values and the parent; `blockLock_` the
// blocks (and what a subclass adds). Where both are taken, `blockLock_`
// comes first.
class ProgressProviderBase : public ProgressProvider {
  public:
    // The mirror counts in ten-thousandths, whatever the provider's own total.
    static constexpr std::int64_t mirrorUnitCount = 10'000;

    std::uint64_t totalUnitCount() const override;
    std::uint64_t completedUnitCount() const override;
    double fractionCompleted() const override;
    std::shared_ptr<ProgressProvider> parent() const override;
    bool adoptParent(std::weak_ptr<ProgressProvider> parent) override;
    MirroredProgress& foundationProgress() override { return foundationProgress_; }
    void onProgressUpdate(UpdateBlock block) override;
    void sendProgressUpdates() override;

  protected:
    ProgressProviderBase(std::uint64_t completed, std::uint64_t total);

    // With `lock_` held: takes the counts, the completed one cut down to the
    // total, and recomputes the fraction.
    void storeCounts(std::uint64_t completed, std::uint64_t total);
    // With `blockLock_` held: brings the mirror up to the current fraction
    // and runs the blocks.
    void publishLocked();

    mutable std::mutex lock_;
    mutable std::mutex blockLock_;
    std::uint64_t totalUnitCount_ = 0;
    std::uint64_t completedUnitCount_ = 0;
    double fractionCompleted_ = 0.0;

  private:
    std::weak_ptr<ProgressProvider> parent_;
    MirroredProgress foundationProgress_{mirrorUnitCount};
    std::vector<UpdateBlock> updateBlocks_;
};

}  // namespace quillbox::detail
