#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <vector>

#include "support/ProgressProviderBase.h"

namespace quillbox {

// Progress rolled up from several providers, each weighted by the units it
// contributes to the tracker's total. A child reports to one tracker only.
// Trackers live in shared pointers (make()), since children hold them weakly.
class MultiProgressTracker final : public detail::ProgressProviderBase,
                                   public std::enable_shared_from_this<MultiProgressTracker> {
  public:
    class Error : public std::exception {
      public:
        enum class Case { childProgressAlreadyHasParent };
        explicit Error(Case errorCase) : case_(errorCase) {}
        Case errorCase() const { return case_; }
        const char* what() const noexcept override {
            return "MultiProgressTracker.Error.childProgressAlreadyHasParent";
        }

      private:
        Case case_;
    };

    static std::shared_ptr<MultiProgressTracker> make();

    // Adds the child with the given weight, or with its own total when none
    // is given. Throws Error when the child reports to a tracker already;
    // the tracker is then unchanged.
    void addChildProgress(
        const std::shared_ptr<ProgressProvider>& child,
        std::optional<std::uint64_t> contributionUnitsAddedToTotal = std::nullopt);

  private:
    struct PassKey {};

  public:
    explicit MultiProgressTracker(PassKey) : ProgressProviderBase(0, 0) {}

  private:
    struct Child {
        std::shared_ptr<ProgressProvider> provider;
        std::uint64_t contributionUnits;
    };

    // With `blockLock_` held.
    void recomputeLocked();
    void childDidUpdate();

    std::vector<Child> children_;  // guarded by blockLock_
};

}  // namespace quillbox
