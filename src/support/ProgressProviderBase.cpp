#include "support/ProgressProviderBase.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace quillbox {

double safeFraction(std::uint64_t completed, std::uint64_t total) {
    const double fraction = static_cast<double>(completed) / static_cast<double>(total);
    if (std::isnan(fraction))
        return 0.0;
    if (std::isinf(fraction))
        return 1.0;
    return fraction;
}

std::string ProgressProvider::description() const {
    char percent[32];
    std::snprintf(percent, sizeof percent, "%.1f%%", fractionCompleted() * 100.0);
    return std::to_string(completedUnitCount()) + "/" + std::to_string(totalUnitCount()) + " (" +
           percent + ")";
}

namespace detail {

namespace {

// The mirror's share of its own total, cut to a whole unit.
std::int64_t mirroredCount(double fraction) {
    return static_cast<std::int64_t>(fraction *
                                     static_cast<double>(ProgressProviderBase::mirrorUnitCount));
}

}  // namespace

ProgressProviderBase::ProgressProviderBase(std::uint64_t completed, std::uint64_t total) {
    storeCounts(completed, total);
    foundationProgress_.setCompletedUnitCount(mirroredCount(fractionCompleted_));
}

std::uint64_t ProgressProviderBase::totalUnitCount() const {
    std::lock_guard lock(lock_);
    return totalUnitCount_;
}

std::uint64_t ProgressProviderBase::completedUnitCount() const {
    std::lock_guard lock(lock_);
    return completedUnitCount_;
}

double ProgressProviderBase::fractionCompleted() const {
    std::lock_guard lock(lock_);
    return fractionCompleted_;
}

std::shared_ptr<ProgressProvider> ProgressProviderBase::parent() const {
    std::lock_guard lock(lock_);
    return parent_.lock();
}

bool ProgressProviderBase::adoptParent(std::weak_ptr<ProgressProvider> parent) {
    std::lock_guard lock(lock_);
    if (!parent_.expired())
        return false;
    parent_ = std::move(parent);
    return true;
}

void ProgressProviderBase::onProgressUpdate(UpdateBlock block) {
    std::lock_guard lock(blockLock_);
    updateBlocks_.push_back(std::move(block));
}

void ProgressProviderBase::sendProgressUpdates() {
    std::lock_guard lock(blockLock_);
    publishLocked();
}

void ProgressProviderBase::storeCounts(std::uint64_t completed, std::uint64_t total) {
    totalUnitCount_ = total;
    completedUnitCount_ = std::min(completed, total);
    fractionCompleted_ = safeFraction(completedUnitCount_, totalUnitCount_);
}

// The mirror reads the fraction afresh rather than taking one computed
// earlier, so that of two updates racing here the later value wins.
void ProgressProviderBase::publishLocked() {
    foundationProgress_.setCompletedUnitCount(mirroredCount(fractionCompleted()));
    for (const auto& block : updateBlocks_)
        block(*this);
}

}  // namespace detail

}  // namespace quillbox
