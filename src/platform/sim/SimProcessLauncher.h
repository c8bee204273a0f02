#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/ProcessLauncher.h"

namespace platform::sim {

// Records the processes the program starts instead of starting them.
class SimProcessLauncher final : public ProcessLauncher {
  public:
    struct Launch {
        std::filesystem::path executable;
        std::vector<std::string> arguments;
    };

    explicit SimProcessLauncher(pid_t ownProcessIdentifier) : pid_(ownProcessIdentifier) {}

    std::string launch(const std::filesystem::path& executable,
                       const std::vector<std::string>& arguments) override {
        launches_.push_back({executable, arguments});
        return failure_;
    }
    pid_t processIdentifier() const override { return pid_; }

    // A non-empty text makes every launch fail with it.
    void setFailure(std::string text) { failure_ = std::move(text); }
    const std::vector<Launch>& launches() const { return launches_; }

  private:
    pid_t pid_;
    std::string failure_;
    std::vector<Launch> launches_;
};

}  // namespace platform::sim
