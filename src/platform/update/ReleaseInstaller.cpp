#include "platform/update/ReleaseInstaller.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <optional>
#include <system_error>
#include <vector>

#include "platform/update/InstallLocation.h"

extern char** environ;

namespace platform::update {

namespace {

namespace fs = std::filesystem;

// A folder that is removed with everything in it when this goes.
class ScratchFolder {
  public:
    explicit ScratchFolder(const fs::path& parent) {
        auto pattern = (parent / ".tarnwick-update-XXXXXX").string();
        if (::mkdtemp(pattern.data()))
            path_ = pattern;
    }
    ~ScratchFolder() {
        std::error_code ignored;
        if (!path_.empty())
            fs::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const fs::path& path() const { return path_; }

  private:
    fs::path path_;
};

bool writeFile(const fs::path& path, std::string_view bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    return static_cast<bool>(out);
}

// The system's tar, which knows every compression a release may use. Its
// output goes nowhere: a failure is told by its exit status.
bool unpack(const fs::path& archive, const fs::path& into) {
    std::vector<std::string> words{
        "tar", "-x", "-f", archive.string(), "-C", into.string(), "--no-same-owner"};
    std::vector<char*> argv;
    for (auto& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    pid_t pid = -1;
    const int error = ::posix_spawnp(&pid, "tar", &actions, nullptr, argv.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        return false;
    int status = 0;
    pid_t waited;
    do {
        waited = ::waitpid(pid, &status, 0);
    } while (waited < 0 && errno == EINTR);
    return waited == pid && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// A version folder's name as the link gives it: one plain name, in the
// root.
bool isPlainName(const fs::path& name) {
    const auto text = name.string();
    return !text.empty() && text.find('/') == std::string::npos && text != "." && text != ".." &&
           !text.starts_with(".");
}

bool isProgram(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(fs::symlink_status(path, error)) &&
           ::access(path.c_str(), X_OK) == 0;
}

// The version folder the unpacked release's link names; nothing when the
// archive isn't laid out as a release.
std::optional<fs::path> unpackedVersion(const fs::path& unpacked, std::string& problem) {
    std::error_code error;
    std::vector<fs::path> tops;
    for (const auto& entry : fs::directory_iterator(unpacked, error))
        tops.push_back(entry.path());
    if (tops.size() != 1 || !fs::is_directory(fs::symlink_status(tops.front(), error))) {
        problem = "the archive doesn't hold one release folder";
        return std::nullopt;
    }
    const auto link = tops.front() / releaseLayout::currentLink;
    const auto name = fs::read_symlink(link, error);
    if (error || !isPlainName(name)) {
        problem = "the archive's release folder has no link to its version";
        return std::nullopt;
    }
    const auto version = tops.front() / name;
    if (!isProgram(version / releaseLayout::program)) {
        problem = "the archive's version has no program";
        return std::nullopt;
    }
    return version;
}

// Moves the new version folder into the root, in place of a leftover of an
// earlier attempt but never of the running version.
bool placeVersion(const fs::path& unpacked, const fs::path& destination, const fs::path& root,
                  std::string& problem) {
    std::error_code error;
    if (fs::exists(fs::symlink_status(destination, error))) {
        if (fs::equivalent(destination, root / releaseLayout::currentLink, error)) {
            problem = "this version is the one installed";
            return false;
        }
        fs::remove_all(destination, error);
    }
    fs::rename(unpacked, destination, error);
    if (error) {
        problem =
            "the new version couldn't be moved beside the current one (" + error.message() + ")";
        return false;
    }
    return true;
}

// The version folders of the root other than those kept; nothing else
// there is touched.
void removeVersionsBut(const fs::path& root, const std::vector<fs::path>& kept) {
    std::error_code error;
    std::vector<fs::path> stale;
    for (const auto& entry : fs::directory_iterator(root, error)) {
        const auto name = entry.path().filename();
        const bool isVersion = isPlainName(name) && entry.is_directory(error) &&
                               !entry.is_symlink(error) &&
                               isProgram(entry.path() / releaseLayout::program);
        if (isVersion && std::find(kept.begin(), kept.end(), name) == kept.end())
            stale.push_back(entry.path());
    }
    for (const auto& folder : stale)
        fs::remove_all(folder, error);
}

}  // namespace

// The one step that changes the installed version: a new link, made in a
// scratch folder of the root, renamed over the old one.
std::string switchCurrentVersion(const fs::path& root, const fs::path& versionName) {
    const ScratchFolder scratch(root);
    std::error_code error;
    if (scratch.path().empty())
        return "the release folder can't be written";
    const auto fresh = scratch.path() / releaseLayout::currentLink;
    fs::create_symlink(versionName, fresh, error);
    if (!error)
        fs::rename(fresh, root / releaseLayout::currentLink, error);
    if (error)
        return "the link to the current version couldn't be switched (" + error.message() + ")";
    return {};
}

InstallResult installRelease(std::string_view archive, const std::filesystem::path& root,
                             const std::filesystem::path& runningVersion) {
    InstallResult result;
    const ScratchFolder scratch(root);
    if (scratch.path().empty()) {
        result.problem = "the release folder can't be written";
        return result;
    }
    const auto archivePath = scratch.path() / "release.tar";
    const auto unpacked = scratch.path() / "unpacked";
    std::error_code error;
    if (!writeFile(archivePath, archive) || !fs::create_directory(unpacked, error)) {
        result.problem = "the archive couldn't be saved in the release folder";
        return result;
    }
    if (!unpack(archivePath, unpacked)) {
        result.problem = "the archive couldn't be unpacked";
        return result;
    }
    const auto version = unpackedVersion(unpacked, result.problem);
    if (!version)
        return result;
    const auto name = version->filename();
    const auto destination = root / name;
    if (!placeVersion(*version, destination, root, result.problem))
        return result;
    result.problem = switchCurrentVersion(root, name);
    if (!result.problem.empty()) {
        fs::remove_all(destination, error);
        return result;
    }
    removeVersionsBut(root, {name, runningVersion});
    result.program = root / releaseLayout::currentLink / releaseLayout::program;
    return result;
}

}  // namespace platform::update
