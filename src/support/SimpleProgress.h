#pragma once

#include <cstdint>

#include "support/ProgressProviderBase.h"

namespace quillbox {

// A progress value written by one task and read by anyone: counts of units,
// the fraction they make, and blocks that run on every change.
class SimpleProgress final : public detail::ProgressProviderBase, public ProgressIngress {
  public:
    SimpleProgress(std::uint64_t completedUnitCount, std::uint64_t totalUnitCount)
        : ProgressProviderBase(completedUnitCount, totalUnitCount) {}
    struct FractionCompleted {
        double value;
    };
    // The completed count is the nearest whole share of the total; a
    // fraction outside 0...1 is taken as the nearer end, one that isn't a
    // number as 0.
    SimpleProgress(FractionCompleted fractionCompleted, std::uint64_t totalUnitCount);

    // A total below the completed count takes the completed count down too.
    void setTotalUnitCount(std::uint64_t total) override;
    // Capped at the total.
    void updateCompletedValue(std::uint64_t completed) override;
    // A value that isn't finite is ignored.
    void updateFractionCompleted(double fraction) override;
    void markFinished() override;
};

}  // namespace quillbox
