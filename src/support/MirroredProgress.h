#pragma once

#include <cstdint>
#include <mutex>

#include "support/Signal.h"

namespace quillbox {

// The progress object a view binds to, such as a progress bar: a total and a
// completed count of units, with a signal on every change. A progress
// provider keeps it in step with its own fraction, on its own scale.
class MirroredProgress {
  public:
    explicit MirroredProgress(std::int64_t totalUnitCount) : totalUnitCount_(totalUnitCount) {}
    MirroredProgress(const MirroredProgress&) = delete;
    MirroredProgress& operator=(const MirroredProgress&) = delete;

    std::int64_t totalUnitCount() const;
    std::int64_t completedUnitCount() const;
    // Completed over total; 0.0 while the total is not positive.
    double fractionCompleted() const;

    // Emits changed when the count is new; the slots run without any lock.
    void setCompletedUnitCount(std::int64_t count);

    Signal<> changed;

  private:
    mutable std::mutex mutex_;
    std::int64_t totalUnitCount_;
    std::int64_t completedUnitCount_ = 0;
};

}  // namespace quillbox
