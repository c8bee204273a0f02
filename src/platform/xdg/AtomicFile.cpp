#include "platform/xdg/AtomicFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "platform/xdg/FileDescriptor.h"

namespace platform::xdg {

namespace {

bool writeAll(int fd, std::string_view bytes) {
    std::size_t written = 0;
    while (written < bytes.size()) {
        const auto n = ::write(fd, bytes.data() + written, bytes.size() - written);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        written += static_cast<std::size_t>(n);
    }
    return true;
}

void syncFolder(const std::filesystem::path& folder) {
    FileDescriptor fd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (fd)
        ::fsync(fd.get());
}

}  // namespace

std::string writeFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                                mode_t mode, struct stat* written) {
    const auto folder = path.parent_path();
    std::string temporary = (folder / ("." + path.filename().string() + ".XXXXXX")).string();
    FileDescriptor fd(::mkostemp(temporary.data(), O_CLOEXEC));
    struct stat status {};
    const bool done = fd && ::fchmod(fd.get(), mode) == 0 && writeAll(fd.get(), bytes) &&
                      ::fsync(fd.get()) == 0 && ::fstat(fd.get(), &status) == 0 &&
                      ::rename(temporary.c_str(), path.c_str()) == 0;
    if (!done) {
        const int error = errno;
        if (fd)
            ::unlink(temporary.c_str());
        return std::strerror(error);
    }
    syncFolder(folder);
    if (written)
        *written = status;
    return {};
}

}  // namespace platform::xdg
