#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace testsupport {

// Environment variables changed for a scope and put back after it, last
// change first.
class ScopedEnvironment {
  public:
    ScopedEnvironment() = default;
    ~ScopedEnvironment() {
        for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) {
            if (it->second)
                ::setenv(it->first.c_str(), it->second->c_str(), 1);
            else
                ::unsetenv(it->first.c_str());
        }
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

    void set(const std::string& name, const std::string& value) {
        const char* before = std::getenv(name.c_str());
        saved_.emplace_back(name, before ? std::optional<std::string>(before) : std::nullopt);
        ::setenv(name.c_str(), value.c_str(), 1);
    }
    void unset(const std::string& name) {
        const char* before = std::getenv(name.c_str());
        saved_.emplace_back(name, before ? std::optional<std::string>(before) : std::nullopt);
        ::unsetenv(name.c_str());
    }

  private:
    std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

}  // namespace testsupport
