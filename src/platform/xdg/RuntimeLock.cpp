#include "platform/xdg/RuntimeLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <utility>

namespace platform::xdg {

namespace {

// A folder only the user can enter, in a place everyone can write.
std::filesystem::path privateTemporaryFolder() {
    const auto folder =
        std::filesystem::temp_directory_path() / ("tarnwick-" + std::to_string(::getuid()));
    ::mkdir(folder.c_str(), 0700);
    struct stat status {};
    if (::lstat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) ||
        status.st_uid != ::getuid() || (status.st_mode & 0077) != 0) {
        return {};
    }
    return folder;
}

}  // namespace

std::filesystem::path RuntimeLock::runtimeFolder() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime && *runtime == '/')
        return runtime;
    return privateTemporaryFolder();
}

std::pair<RuntimeLock::Outcome, std::optional<RuntimeLock>> RuntimeLock::take(
    const std::string& fileName) {
    const auto folder = runtimeFolder();
    if (folder.empty())
        return {Outcome::unavailable, std::nullopt};
    auto path = folder / fileName;
    const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (fd < 0)
        return {Outcome::unavailable, std::nullopt};
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        const bool held = errno == EWOULDBLOCK;
        ::close(fd);
        return {held ? Outcome::heldByAnother : Outcome::unavailable, std::nullopt};
    }
    return {Outcome::taken, RuntimeLock(fd, std::move(path))};
}

RuntimeLock::RuntimeLock(RuntimeLock&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)), path_(std::move(other.path_)) {}

RuntimeLock& RuntimeLock::operator=(RuntimeLock&& other) noexcept {
    if (this != &other) {
        if (fd_ >= 0)
            ::close(fd_);
        fd_ = std::exchange(other.fd_, -1);
        path_ = std::move(other.path_);
    }
    return *this;
}

RuntimeLock::~RuntimeLock() {
    if (fd_ >= 0)
        ::close(fd_);
}

}  // namespace platform::xdg
