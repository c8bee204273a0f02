#include "platform/xdg/PlistFileStore.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "platform/PropertyListCodec.h"
#include "platform/xdg/AtomicFile.h"
#include "platform/xdg/DesktopEntryDirectories.h"
#include "platform/xdg/FileDescriptor.h"
#include "support/StandardOutput.h"

namespace platform::xdg {

namespace fs = std::filesystem;

namespace {

// Far beyond any real preferences; a bigger file is treated as damaged
// rather than read into memory.
constexpr off_t largestReadableFile = off_t{256} << 20;

std::string systemError(int error) {
    return std::strerror(error);
}

std::optional<std::string> readAll(int fd, off_t expectedSize) {
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(expectedSize));
    char buffer[65536];
    for (;;) {
        const auto n = ::read(fd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return std::nullopt;
        if (n == 0)
            return bytes;
        bytes.append(buffer, static_cast<std::size_t>(n));
    }
}

std::string utcTimestamp() {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm utc{};
    ::gmtime_r(&now, &utc);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", &utc);
    return text;
}

// <name>.damaged-<UTC timestamp>, with a counter when that name is taken.
fs::path unusedDamagedPath(const fs::path& path) {
    const std::string base = path.string() + ".damaged-" + utcTimestamp();
    fs::path candidate = base;
    for (int counter = 2; fs::exists(candidate); ++counter) {
        candidate = base + "-" + std::to_string(counter);
    }
    return candidate;
}

}  // namespace

PlistFileStore::PlistFileStore(fs::path path, MainLoop& loop)
    : MemoryPreferencesStore(loop), path_(std::move(path)) {
    loadAtStart();
    startWatching();
}

PlistFileStore::~PlistFileStore() {
    if (watch_)
        loop_.unwatch(watch_);
    if (inotifyDescriptor_ >= 0)
        ::close(inotifyDescriptor_);
}

fs::path PlistFileStore::defaultPath(const std::string& bundleIdentifier) {
    return DesktopEntryDirectories::fromEnvironment().configHome / "tarnwick" /
           (bundleIdentifier + ".plist");
}

std::optional<PropertyList::Dictionary> PlistFileStore::parse(std::string_view bytes) {
    auto list = PropertyListCodec::decode(bytes);
    if (!list || !list->dictionary())
        return std::nullopt;
    return *list->dictionary();
}

PlistFileStore::FileIdentity PlistFileStore::FileIdentity::of(const struct stat& status) {
    return FileIdentity{status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
                        status.st_mtim.tv_nsec};
}

std::optional<PlistFileStore::FileIdentity> PlistFileStore::identityOf(const fs::path& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return FileIdentity::of(status);
}

namespace {

// What the file held: nothing (no file), a dictionary, damage, or a file
// that is there but that we may not read.
struct FileContents {
    enum class Kind { missing, values, damaged, unreadable } kind;
    PropertyList::Dictionary values;
    std::string damage;
    struct stat status {};
};

FileContents readPreferencesFile(const fs::path& path) {
    FileContents contents{FileContents::Kind::damaged, {}, {}, {}};
    // Only a regular file is opened: opening a named pipe or a device could
    // block or act. The check after opening covers a swap in between, and
    // opening without blocking keeps even that from hanging.
    struct stat before {};
    if (::stat(path.c_str(), &before) == 0 && !S_ISREG(before.st_mode)) {
        contents.damage = "not a regular file";
        return contents;
    }
    FileDescriptor fd(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!fd) {
        if (errno == ENOENT)
            contents.kind = FileContents::Kind::missing;
        else if (errno == EACCES || errno == EPERM)
            contents.kind = FileContents::Kind::unreadable;
        contents.damage = systemError(errno);
        return contents;
    }
    if (::fstat(fd.get(), &contents.status) != 0) {
        contents.damage = systemError(errno);
    } else if (!S_ISREG(contents.status.st_mode)) {
        contents.damage = "not a regular file";
    } else if (contents.status.st_size > largestReadableFile) {
        contents.damage = "too large";
    } else if (auto bytes = readAll(fd.get(), contents.status.st_size); !bytes) {
        contents.damage = systemError(errno);
    } else if (auto values = PlistFileStore::parse(*bytes)) {
        contents.kind = FileContents::Kind::values;
        contents.values = std::move(*values);
    } else {
        contents.damage = "not a property-list dictionary";
    }
    return contents;
}

// Creates the missing folders down to `folder`, private to the user, as the
// configuration home's conventions ask. The error of the first that can't
// be made, if any.
std::error_code createPrivateFolders(const fs::path& folder) {
    fs::path made;
    for (const auto& part : folder) {
        made /= part;
        if (::mkdir(made.c_str(), S_IRWXU) != 0 && errno != EEXIST)
            return std::error_code(errno, std::generic_category());
    }
    return {};
}

// Where writes go: through a symbolic link to its target, so that a link
// someone keeps (into a synced folder, say) stays a link.
fs::path followLinks(const fs::path& path) {
    fs::path target = path;
    std::error_code error;
    for (int hops = 0; hops < 40 && fs::is_symlink(target, error); ++hops) {
        const auto link = fs::read_symlink(target, error);
        if (error)
            break;
        target = link.is_absolute() ? link : target.parent_path() / link;
    }
    return target;
}

}  // namespace

void PlistFileStore::loadAtStart() {
    auto contents = readPreferencesFile(path_);
    switch (contents.kind) {
        case FileContents::Kind::missing:
            break;
        case FileContents::Kind::values:
            values_ = std::move(contents.values);
            lastKnownFile_ = FileIdentity::of(contents.status);
            break;
        case FileContents::Kind::damaged:
            moveDamagedFileAside(contents.damage, "started with empty preferences");
            break;
        case FileContents::Kind::unreadable:
            leaveUnreadableFile(contents.damage);
            break;
    }
}

void PlistFileStore::leaveUnreadableFile(const std::string& reason) {
    saving_ = false;
    quillbox::printLine("Preferences file " + path_.string() + " can't be read (" + reason +
                        "); left it as it is, and changes to preferences will not be saved.");
}

void PlistFileStore::moveDamagedFileAside(const std::string& reason, std::string_view outcome) {
    const auto damagedPath = unusedDamagedPath(path_);
    const std::string problem =
        "Preferences file " + path_.string() + " could not be read (" + reason + ")";
    if (::rename(path_.c_str(), damagedPath.c_str()) == 0) {
        lastKnownFile_.reset();
        quillbox::printLine(problem + "; kept it as " + damagedPath.string() + " and " +
                            std::string(outcome) + ".");
    } else {
        saving_ = false;
        quillbox::printLine(problem + " nor moved aside (" + systemError(errno) +
                            "); changes to preferences will not be saved.");
    }
}

void PlistFileStore::startWatching() {
    createPrivateFolders(path_.parent_path());
    inotifyDescriptor_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (inotifyDescriptor_ < 0)
        return;
    const auto events = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;
    if (::inotify_add_watch(inotifyDescriptor_, path_.parent_path().c_str(), events) < 0)
        return;
    watch_ = loop_.watchFileDescriptor(inotifyDescriptor_, [this] { readWatchEvents(); });
}

void PlistFileStore::readWatchEvents() {
    const std::string fileName = path_.filename().string();
    bool concernsOurFile = false;
    alignas(inotify_event) char buffer[8192];
    for (;;) {
        const auto length = ::read(inotifyDescriptor_, buffer, sizeof buffer);
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0)
            break;
        for (ssize_t offset = 0; offset < length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + offset);
            if ((event->mask & IN_Q_OVERFLOW) || (event->len > 0 && fileName == event->name)) {
                concernsOurFile = true;
            }
            offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
    if (concernsOurFile)
        reloadAfterOutsideChange();
}

void PlistFileStore::reloadAfterOutsideChange() {
    bool changed = false;
    {
        std::lock_guard lock(mutex_);
        // Our own last write, or nothing new since it.
        if (identityOf(path_) == lastKnownFile_)
            return;
        auto contents = readPreferencesFile(path_);
        switch (contents.kind) {
            case FileContents::Kind::missing:
                lastKnownFile_.reset();
                saving_ = true;
                changed = !values_.empty();
                values_.clear();
                break;
            case FileContents::Kind::values:
                lastKnownFile_ = FileIdentity::of(contents.status);
                saving_ = true;
                changed = contents.values != values_;
                values_ = std::move(contents.values);
                break;
            case FileContents::Kind::damaged:
                moveDamagedFileAside(contents.damage, "kept the preferences already loaded");
                save();
                break;
            case FileContents::Kind::unreadable:
                lastKnownFile_ = identityOf(path_);
                leaveUnreadableFile(contents.damage);
                break;
        }
    }
    // Already on the main loop: the watch runs there.
    if (changed)
        announceChange();
}

void PlistFileStore::save() {
    if (!saving_)
        return;
    const auto bytes = PropertyListCodec::encodeBinary(PropertyList(values_));
    const fs::path target = followLinks(path_);
    const fs::path folder = target.parent_path();
    if (const auto error = createPrivateFolders(folder)) {
        quillbox::printLine("Could not save preferences to " + path_.string() + ": " +
                            error.message());
        return;
    }
    struct stat status {};
    const auto error = writeFileAtomically(
        target, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()),
        S_IRUSR | S_IWUSR, &status);
    if (!error.empty()) {
        quillbox::printLine("Could not save preferences to " + path_.string() + ": " + error);
        return;
    }
    lastKnownFile_ = FileIdentity::of(status);
}

}  // namespace platform::xdg
