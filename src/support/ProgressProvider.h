#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "support/MirroredProgress.h"

namespace quillbox {

// Completed over total as doubles, kept in range: 0 of 0 is 0.0 and n of 0
// is 1.0.
double safeFraction(std::uint64_t completed, std::uint64_t total);

// Something whose progress can be read and followed.
class ProgressProvider {
  public:
    using UpdateBlock = std::function<void(ProgressProvider&)>;

    virtual ~ProgressProvider() = default;

    virtual std::uint64_t totalUnitCount() const = 0;
    virtual std::uint64_t completedUnitCount() const = 0;
    virtual double fractionCompleted() const = 0;
    // The tracker this provider reports to, if any.
    virtual std::shared_ptr<ProgressProvider> parent() const = 0;
    // Makes `parent` the parent unless there is one already; says whether
    // it did.
    virtual bool adoptParent(std::weak_ptr<ProgressProvider> parent) = 0;
    virtual MirroredProgress& foundationProgress() = 0;

    // Blocks run after every change, on the changing thread, in the order
    // they were added. A block must not add another block to the same
    // provider.
    virtual void onProgressUpdate(UpdateBlock block) = 0;
    virtual void sendProgressUpdates() = 0;

    // "3/10 (30.0%)"
    std::string description() const;
};

// The writable sides of a progress.
class ProgressBasicIngress {
  public:
    virtual ~ProgressBasicIngress() = default;
    virtual void markFinished() = 0;
};

class ProgressFractionIngress {
  public:
    virtual ~ProgressFractionIngress() = default;
    virtual void updateFractionCompleted(double fraction) = 0;
};

class ProgressIntegralIngress {
  public:
    virtual ~ProgressIntegralIngress() = default;
    virtual void setTotalUnitCount(std::uint64_t total) = 0;
    virtual void updateCompletedValue(std::uint64_t completed) = 0;
};

class ProgressIngress : public ProgressBasicIngress,
                        public ProgressFractionIngress,
                        public ProgressIntegralIngress {};

}  // namespace quillbox
