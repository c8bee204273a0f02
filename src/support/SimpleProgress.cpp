#include "support/SimpleProgress.h"

#include <algorithm>
#include <cmath>

namespace quillbox {

namespace {

std::uint64_t shareOf(double fraction, std::uint64_t total) {
    if (std::isnan(fraction))
        fraction = 0.0;
    fraction = std::clamp(fraction, 0.0, 1.0);
    return static_cast<std::uint64_t>(std::llround(fraction * static_cast<double>(total)));
}

}  // namespace

SimpleProgress::SimpleProgress(FractionCompleted fractionCompleted, std::uint64_t totalUnitCount)
    : ProgressProviderBase(shareOf(fractionCompleted.value, totalUnitCount), totalUnitCount) {}

void SimpleProgress::setTotalUnitCount(std::uint64_t total) {
    {
        std::lock_guard lock(lock_);
        storeCounts(completedUnitCount_, total);
    }
    sendProgressUpdates();
}

void SimpleProgress::updateCompletedValue(std::uint64_t completed) {
    {
        std::lock_guard lock(lock_);
        storeCounts(completed, totalUnitCount_);
    }
    sendProgressUpdates();
}

void SimpleProgress::updateFractionCompleted(double fraction) {
    if (!std::isfinite(fraction))
        return;
    {
        std::lock_guard lock(lock_);
        storeCounts(shareOf(fraction, totalUnitCount_), totalUnitCount_);
    }
    sendProgressUpdates();
}

void SimpleProgress::markFinished() {
    {
        std::lock_guard lock(lock_);
        storeCounts(totalUnitCount_, totalUnitCount_);
    }
    sendProgressUpdates();
}

}  // namespace quillbox
