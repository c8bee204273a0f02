#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "platform/xdg/RuntimeLock.h"
#include "support/ScopedEnvironment.h"

extern char** environ;

using platform::xdg::RuntimeLock;
using Outcome = RuntimeLock::Outcome;

namespace {

class RuntimeLockTest : public ::testing::Test {
  protected:
    RuntimeLockTest()
        : folder_(std::filesystem::temp_directory_path() /
                  ("runtime-lock-test-" + std::to_string(::getpid()))) {
        environment_.set("XDG_RUNTIME_DIR", folder_.string());
        std::filesystem::create_directories(folder_);
    }
    ~RuntimeLockTest() override { std::filesystem::remove_all(folder_); }

    std::filesystem::path folder_;
    testsupport::ScopedEnvironment environment_;
};

TEST_F(RuntimeLockTest, OneHolderAtATimeUntilItLetsGo) {
    auto [first, held] = RuntimeLock::take("app.lock");
    ASSERT_EQ(first, Outcome::taken);
    EXPECT_EQ(held->path(), folder_ / "app.lock");
    EXPECT_EQ(RuntimeLock::take("app.lock").first, Outcome::heldByAnother);
    EXPECT_EQ(RuntimeLock::take("other.lock").first, Outcome::taken);

    // Moving the lock keeps it held; only its last owner lets go.
    auto moved = std::move(*held);
    held.reset();
    EXPECT_EQ(RuntimeLock::take("app.lock").first, Outcome::heldByAnother);
    { [[maybe_unused]] auto gone = std::move(moved); }
    EXPECT_EQ(RuntimeLock::take("app.lock").first, Outcome::taken);
}

// A relaunch starts the program's helper while the lock is held; the helper
// must not keep the lock once the program has ended.
TEST_F(RuntimeLockTest, AProgramStartedWhileHoldingDoesNotInheritIt) {
    pid_t child = -1;
    {
        auto [outcome, lock] = RuntimeLock::take("app.lock");
        ASSERT_EQ(outcome, Outcome::taken);
        char sleep[] = "sleep", seconds[] = "5";
        char* argv[] = {sleep, seconds, nullptr};
        ASSERT_EQ(::posix_spawnp(&child, "sleep", nullptr, nullptr, argv, environ), 0);
    }
    EXPECT_EQ(RuntimeLock::take("app.lock").first, Outcome::taken);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
}

TEST_F(RuntimeLockTest, AMissingRuntimeFolderMakesTheLockUnavailable) {
    testsupport::ScopedEnvironment missing;
    missing.set("XDG_RUNTIME_DIR", (folder_ / "gone").string());
    EXPECT_EQ(RuntimeLock::take("app.lock").first, Outcome::unavailable);
}

TEST_F(RuntimeLockTest, WithoutARuntimeFolderAPrivateTemporaryOneIsUsed) {
    testsupport::ScopedEnvironment unset;
    unset.unset("XDG_RUNTIME_DIR");
    const auto folder = RuntimeLock::runtimeFolder();
    ASSERT_FALSE(folder.empty());
    EXPECT_EQ(std::filesystem::status(folder).permissions() & std::filesystem::perms::all,
              std::filesystem::perms::owner_all);
    EXPECT_EQ(RuntimeLock::take("runtime-lock-test.lock").first, Outcome::taken);
    std::filesystem::remove(folder / "runtime-lock-test.lock");
}

}  // namespace
