// Files at the preference path that a careless or hostile program left:
// nested past any reader's stack, named pipes, files we may not read, links,
// folders we may not write.
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <future>
#include <mutex>
#include <string>
#include <thread>

#include "platform/DeepPropertyLists.h"
#include "platform/xdg/PlistFileStore.h"
#include "support/StandardOutput.h"
#include "xdg/PlistFileStoreFixture.h"

using platform::PropertyList;
using platform::xdg::PlistFileStore;
using platform::xdg::fixtures::PlistFileStoreTest;
namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

// Turns a reader stuck on a named pipe into a test failure instead of a
// hang: unless dismissed in time, it opens the pipe for writing and closes
// it, which ends the reader's wait.
class StuckPipeReleaser {
  public:
    explicit StuckPipeReleaser(fs::path pipe) : pipe_(std::move(pipe)) {
        thread_ = std::thread([this] {
            std::unique_lock lock(mutex_);
            if (dismissedSignal_.wait_for(lock, 20s, [this] { return dismissed_; }))
                return;
            released_ = true;
            const int fd = ::open(pipe_.c_str(), O_WRONLY | O_NONBLOCK);
            if (fd >= 0)
                ::close(fd);
        });
    }
    ~StuckPipeReleaser() { dismiss(); }

    // Whether the reader had to be released.
    bool dismiss() {
        {
            std::lock_guard lock(mutex_);
            dismissed_ = true;
        }
        dismissedSignal_.notify_all();
        if (thread_.joinable())
            thread_.join();
        return released_;
    }

  private:
    fs::path pipe_;
    std::mutex mutex_;
    std::condition_variable dismissedSignal_;
    bool dismissed_ = false;
    bool released_ = false;
    std::thread thread_;
};

// Runs `check` as a user without privileges, so that file modes count even
// when the tests run as root; the tree becomes that user's. `check` gives an
// empty text on success, else what went wrong.
std::string asUserWithoutPrivileges(const fs::path& tree,
                                    const std::function<std::string()>& check) {
    if (::geteuid() != 0)
        return check();
    constexpr uid_t nobody = 65534;
    for (const auto& entry : fs::recursive_directory_iterator(tree))
        ::lchown(entry.path().c_str(), nobody, nobody);
    ::lchown(tree.c_str(), nobody, nobody);
    int report[2];
    if (::pipe(report) != 0)
        return "no pipe";
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(report[0]);
        std::string problem;
        if (::setgroups(0, nullptr) != 0 || ::setgid(nobody) != 0 || ::setuid(nobody) != 0)
            problem = "could not drop privileges";
        else
            problem = check();
        (void)!::write(report[1], problem.data(), problem.size());
        ::_exit(0);
    }
    ::close(report[1]);
    std::string problem;
    char buffer[512];
    for (ssize_t n; (n = ::read(report[0], buffer, sizeof buffer)) > 0;)
        problem.append(buffer, static_cast<std::size_t>(n));
    ::close(report[0]);
    ::waitpid(child, nullptr, 0);
    return problem;
}

std::string fileMode(const fs::path& path) {
    struct stat status {};
    ::lstat(path.c_str(), &status);
    char text[8];
    std::snprintf(text, sizeof text, "%04o", status.st_mode & 07777);
    return text;
}

}  // namespace

TEST_F(PlistFileStoreTest, FilesNestedFiftyThousandDeepAreMovedAsideAtStartAndFromOutside) {
    using namespace platform::fixtures;
    for (const auto& deep : {deepBinaryPropertyList(50'000), deepXMLPropertyList(50'000)}) {
        tree.write(path, deep);
        {
            quillbox::CapturedOutput output;
            PlistFileStore store(path, loop);
            EXPECT_TRUE(store.dictionaryRepresentation().empty());
            ASSERT_EQ(damagedFiles().size(), 1u);
            EXPECT_EQ(tree.read(damagedFiles()[0]), deep);
            EXPECT_EQ(output.lines().size(), 1u);
            fs::remove(damagedFiles()[0]);

            store.setObject("kept", true);
            output.clear();
            tree.write(path, deep);
            ASSERT_TRUE(loop.runUntil([&] { return !damagedFiles().empty(); }));
            EXPECT_EQ(output.lines().size(), 1u);
            EXPECT_EQ(store.objectForKey("kept"), PropertyList(true));
        }
        fs::remove_all(path.parent_path());
    }
}

TEST_F(PlistFileStoreTest, NamedPipesAtThePathNeverBlockAtStartOrWhenMovedIn) {
    fs::create_directories(path.parent_path());
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    std::unique_ptr<PlistFileStore> store;
    {
        quillbox::CapturedOutput output;
        StuckPipeReleaser releaser(path);
        store = std::make_unique<PlistFileStore>(path, loop);
        EXPECT_FALSE(releaser.dismiss()) << "blocked opening a pipe at start";
        EXPECT_EQ(output.lines().size(), 1u);
    }
    EXPECT_EQ(damagedFiles().size(), 1u);
    store->setObject("kept", 1);

    const fs::path beside = path.string() + ".pipe";
    ASSERT_EQ(::mkfifo(beside.c_str(), 0600), 0);
    quillbox::CapturedOutput output;
    StuckPipeReleaser releaser(path);
    fs::rename(beside, path);
    EXPECT_TRUE(loop.runUntil([&] { return damagedFiles().size() == 2; }));
    EXPECT_FALSE(releaser.dismiss()) << "the main loop blocked on a pipe moved in";
    EXPECT_EQ(output.lines().size(), 1u);
    EXPECT_EQ(store->objectForKey("kept"), PropertyList(1));
    EXPECT_TRUE(fs::is_regular_file(path));
}

TEST_F(PlistFileStoreTest, AFileWeMayNotReadIsLeftAloneAndNeverReplaced) {
    tree.write(path, "private");
    fs::permissions(path, fs::perms::none);
    const auto problem = asUserWithoutPrivileges(tree.root(), [&]() -> std::string {
        quillbox::CapturedOutput output;
        PlistFileStore store(path, loop);
        store.setObject("lost", true);
        if (!damagedFiles().empty())
            return "moved aside";
        if (output.lines().size() != 1 ||
            output.lines()[0].find("can't be read (Permission denied)") == std::string::npos)
            return "expected one line naming the cause";
        return fileMode(path) == "0000" ? "" : "replaced";
    });
    EXPECT_EQ(problem, "");
}

TEST_F(PlistFileStoreTest, AReadOnlyConfigurationFolderIsNamedAsTheCause) {
    fs::permissions(tree.root(), fs::perms::owner_read | fs::perms::owner_exec);
    const auto problem = asUserWithoutPrivileges(tree.root(), [&]() -> std::string {
        quillbox::CapturedOutput output;
        PlistFileStore store(path, loop);
        store.setObject("unsaved", true);
        if (output.lines().size() != 1 ||
            output.lines()[0].find(": Permission denied") == std::string::npos)
            return output.lines().empty() ? "no line" : output.lines()[0];
        return "";
    });
    EXPECT_EQ(problem, "");
}

TEST_F(PlistFileStoreTest, FoldersAreMadePrivateAndALinkedFileStaysALink) {
    const fs::path configHome = tree.root() / "new-config";
    const fs::path inNewHome = configHome / "tarnwick" / "org.example.Tarnwick.plist";
    PlistFileStore(inNewHome, loop).setObject("x", 1);
    EXPECT_EQ(fileMode(configHome), "0700");
    EXPECT_EQ(fileMode(inNewHome.parent_path()), "0700");

    const fs::path target = tree.root() / "synced" / "prefs.plist";
    fs::create_directories(target.parent_path());
    fs::create_directories(path.parent_path());
    fs::create_symlink("../synced/prefs.plist", path);
    {
        PlistFileStore store(path, loop);
        store.setObject("through", "the link");
    }
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(fileMode(target), "0600");
    EXPECT_EQ(PlistFileStore(path, loop).objectForKey("through"), PropertyList("the link"));
    EXPECT_EQ(std::distance(fs::directory_iterator(target.parent_path()), fs::directory_iterator()),
              1);
}
