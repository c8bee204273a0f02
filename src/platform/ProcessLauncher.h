#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace platform {

class ProcessLauncher {
  public:
    virtual ~ProcessLauncher() = default;
    // Starts the executable detached from us. Empty on success, else the
    // error's text.
    virtual std::string launch(const std::filesystem::path& executable,
                               const std::vector<std::string>& arguments) = 0;
    virtual pid_t processIdentifier() const = 0;
};

}  // namespace platform
