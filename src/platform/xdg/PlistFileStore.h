#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/MainLoop.h"
#include "platform/MemoryPreferencesStore.h"

namespace platform::xdg {

// The user's preferences in one binary property-list file holding a
// dictionary. Every change rewrites the whole file atomically (a temporary
// file in the same folder, synced, renamed into place), readable by the user
// only. The folder is watched with inotify on the main loop, so a change
// another process makes is read back and announced; our own writes are
// recognised and don't count as outside changes. A file that isn't a
// property list (damaged, nested too deep, not a regular file) is moved aside
// with one printed line, never overwritten; one we may not read is left
// alone, with a line. Writes go through a symbolic link to its target. Thread-safe, as
// far as the loop's post() is: our own changes are announced through it.
class PlistFileStore final : public MemoryPreferencesStore {
  public:
    PlistFileStore(std::filesystem::path path, MainLoop& loop);
    ~PlistFileStore() override;
    PlistFileStore(const PlistFileStore&) = delete;
    PlistFileStore& operator=(const PlistFileStore&) = delete;

    // $XDG_CONFIG_HOME/tarnwick/<bundle id>.plist, with ~/.config when the
    // variable is unset or not an absolute path.
    static std::filesystem::path defaultPath(const std::string& bundleIdentifier);

    // The dictionary a preferences file's bytes hold; nothing when they are
    // damaged or hold something else.
    static std::optional<PropertyList::Dictionary> parse(std::string_view bytes);

    const std::filesystem::path& path() const { return path_; }

  private:
    // Which file the folder entry is: a changed identity means someone else
    // wrote it.
    struct FileIdentity {
        dev_t device;
        ino_t inode;
        off_t size;
        std::time_t modifiedSeconds;
        long modifiedNanoseconds;
        static FileIdentity of(const struct stat& status);
        friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
    };

    void loadAtStart();
    void startWatching();
    void readWatchEvents();
    void reloadAfterOutsideChange();
    // Keeps the damaged file beside the real one and says so in one line.
    void moveDamagedFileAside(const std::string& reason, std::string_view outcome);
    // Leaves a file we may not read where it is, says so, and stops saving
    // so as not to replace it.
    void leaveUnreadableFile(const std::string& reason);
    void save();
    // Every change of ours rewrites the file.
    void written() override { save(); }
    static std::optional<FileIdentity> identityOf(const std::filesystem::path& path);

    const std::filesystem::path path_;
    std::optional<FileIdentity> lastKnownFile_;
    // Off when a damaged file couldn't be moved aside: it must not be
    // overwritten, so changes then stay in memory.
    bool saving_ = true;
    int inotifyDescriptor_ = -1;
    Token watch_;
};

}  // namespace platform::xdg
