#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace platform::xdg {

// An exclusive lock on a file in the user's runtime folder, held for as long
// as this object (and so the process) lives. The system drops it when the
// process ends, however it ends, so a lock is never left behind; it is not
// passed on to programs the process starts.
class RuntimeLock {
  public:
    enum class Outcome {
        taken,
        heldByAnother,
        unavailable,  // no runtime folder, or no file could be made there
    };
    // Takes the lock on the file of that name in the runtime folder; the
    // lock comes with the taken outcome only.
    static std::pair<Outcome, std::optional<RuntimeLock>> take(const std::string& fileName);

    // $XDG_RUNTIME_DIR, else a folder of the user's own in the temporary
    // folder.
    static std::filesystem::path runtimeFolder();

    RuntimeLock(RuntimeLock&& other) noexcept;
    RuntimeLock& operator=(RuntimeLock&& other) noexcept;
    RuntimeLock(const RuntimeLock&) = delete;
    RuntimeLock& operator=(const RuntimeLock&) = delete;
    ~RuntimeLock();

    const std::filesystem::path& path() const { return path_; }

  private:
    RuntimeLock(int fd, std::filesystem::path path) : fd_(fd), path_(std::move(path)) {}

    int fd_ = -1;
    std::filesystem::path path_;
};

}  // namespace platform::xdg
