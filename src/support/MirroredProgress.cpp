#include "support/MirroredProgress.h"

namespace quillbox {

std::int64_t MirroredProgress::totalUnitCount() const {
    std::lock_guard lock(mutex_);
    return totalUnitCount_;
}

std::int64_t MirroredProgress::completedUnitCount() const {
    std::lock_guard lock(mutex_);
    return completedUnitCount_;
}

double MirroredProgress::fractionCompleted() const {
    std::lock_guard lock(mutex_);
    if (totalUnitCount_ <= 0)
        return 0.0;
    return static_cast<double>(completedUnitCount_) / static_cast<double>(totalUnitCount_);
}

void MirroredProgress::setCompletedUnitCount(std::int64_t count) {
    {
        std::lock_guard lock(mutex_);
        if (count == completedUnitCount_)
            return;
        completedUnitCount_ = count;
    }
    changed.emit();
}

}  // namespace quillbox
