// The restart helper as the program runs it: a real executable that waits
// for a real process to end and then starts the program given.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "xdg/ProcessTestChild.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;
using platform::xdg::fixtures::ProcessTestChild;
using Clock = std::chrono::steady_clock;

// Polls until the condition holds; false when the time ran out.
bool eventually(const std::function<bool()>& condition, double seconds = 10) {
    const auto deadline = Clock::now() + std::chrono::duration<double>(seconds);
    while (!condition()) {
        if (Clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

std::string contentsOf(const fs::path& file) {
    std::ifstream in(file);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// The helper started with the arguments, its standard error in a file.
class Helper {
  public:
    Helper(const std::vector<std::string>& arguments, const fs::path& errors) {
        std::vector<char*> argv{const_cast<char*>(APP_RESTART_HELPER)};
        for (const auto& argument : arguments)
            argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn(&pid_, APP_RESTART_HELPER, &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
    }
    ~Helper() {
        if (!exitCode_) {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, nullptr, 0);
        }
    }

    pid_t pid() const { return pid_; }
    // Blocked in the wait for the process's end, asking nothing meanwhile.
    bool isWaiting() const {
        std::ifstream stat("/proc/" + std::to_string(pid_) + "/stat");
        std::string line;
        std::getline(stat, line);
        const auto state = line.rfind(") ");
        return state != std::string::npos && line[state + 2] == 'S' &&
               contentsOf("/proc/" + std::to_string(pid_) + "/wchan").find("poll") !=
                   std::string::npos;
    }
    std::optional<int> exitCode(double seconds = 10) {
        eventually(
            [&] {
                int status = 0;
                if (::waitpid(pid_, &status, WNOHANG) == pid_)
                    exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
                return exitCode_.has_value();
            },
            seconds);
        return exitCode_;
    }

  private:
    pid_t pid_ = -1;
    std::optional<int> exitCode_;
};

class AppRestartHelperTest : public ::testing::Test {
  protected:
    AppRestartHelperTest() {
        char pattern[] = "/tmp/tarnwick-restart.XXXXXX";
        folder = ::mkdtemp(pattern);
    }
    ~AppRestartHelperTest() override { fs::remove_all(folder); }

    // A program that notes it was started, and with how many arguments.
    fs::path makeApp(const std::string& relativePath) {
        const auto app = folder / relativePath;
        fs::create_directories(app.parent_path());
        std::ofstream(app) << "#!/bin/sh\necho \"started $$ with $#\" > '" << marker().string()
                           << "'\n";
        fs::permissions(app, fs::perms::owner_all);
        return app;
    }
    fs::path marker() const { return folder / "started"; }
    bool started() const { return fs::exists(marker()); }
    fs::path errors() const { return folder / "errors"; }

    fs::path folder;
};

}  // namespace

TEST_F(AppRestartHelperTest, WaitsForTheProcessToEndThenStartsTheProgramWithoutArguments) {
    const auto app = makeApp("Tarnwick");
    ProcessTestChild old;
    Helper helper({"--watch-pid", std::to_string(old.pid()), "--app", app.string()}, errors());
    ASSERT_TRUE(eventually([&] { return helper.isWaiting(); })) << contentsOf(errors());
    EXPECT_FALSE(started());

    old.kill();
    old.reap();
    EXPECT_EQ(helper.exitCode(), 0) << contentsOf(errors());
    ASSERT_TRUE(eventually([&] { return started(); }));
    EXPECT_TRUE(eventually([&] {
        return contentsOf(marker()).find(" with 0") != std::string::npos;
    })) << contentsOf(marker());
}

// A process that has ended but waits for its parent to collect it has
// ended all the same.
TEST_F(AppRestartHelperTest, AProcessThatEndedUncollectedCounts) {
    const auto app = makeApp("Tarnwick");
    ProcessTestChild old;
    Helper helper({"--watch-pid", std::to_string(old.pid()), "--app", app.string()}, errors());
    ASSERT_TRUE(eventually([&] { return helper.isWaiting(); }));
    old.kill();
    old.waitUntilEnded();
    EXPECT_EQ(helper.exitCode(), 0);
    EXPECT_TRUE(eventually([&] { return started(); }));
}

TEST_F(AppRestartHelperTest, AProcessAlreadyGoneStartsTheProgramAtOnce) {
    const auto app = makeApp("Tarnwick");
    pid_t gone = 0;
    {
        ProcessTestChild child(ProcessTestChild::Behaviour::exitAtOnce);
        gone = child.pid();
        child.reap();
    }
    Helper helper({"--watch-pid", std::to_string(gone), "--app", app.string()}, errors());
    EXPECT_EQ(helper.exitCode(), 0);
    EXPECT_TRUE(eventually([&] { return started(); }));
}

TEST_F(AppRestartHelperTest, APathWithBlanksIsOneProgram) {
    const auto app = makeApp("My Apps/Tarnwick Beta");
    Helper helper({"--watch-pid", "999999999", "--app", app.string()}, errors());
    EXPECT_EQ(helper.exitCode(), 0) << contentsOf(errors());
    EXPECT_TRUE(eventually([&] { return started(); }));
}

TEST_F(AppRestartHelperTest, BadArgumentsPrintTheUsageExitNonZeroAndStartNothing) {
    const auto app = makeApp("Tarnwick").string();
    const std::vector<std::vector<std::string>> wrong{
        {},
        {"--watch-pid", "42"},
        {"--app", app, "--watch-pid", "42"},
        {"--watch-pid", "42x", "--app", app},
        {"--watch-pid", "0", "--app", app},
        {"--watch-pid", "-7", "--app", app},
        {"--watch-pid", "", "--app", app},
        {"--watch-pid", "42", "--app", ""},
        {"--watch-pid", "42", "--app", app, "--verbose"},
        {"--watch-pid=42", "--app", app},
    };
    for (const auto& arguments : wrong) {
        Helper helper(arguments, errors());
        EXPECT_EQ(helper.exitCode(), 2) << ::testing::PrintToString(arguments);
        EXPECT_EQ(contentsOf(errors()), "Usage: AppRestartHelper --watch-pid PID --app PATH\n");
    }
    EXPECT_FALSE(started());
}

TEST_F(AppRestartHelperTest, AProgramThatCannotStartIsReportedWithAFailingExit) {
    Helper helper({"--watch-pid", "999999999", "--app", (folder / "missing").string()}, errors());
    EXPECT_EQ(helper.exitCode(), 1);
    EXPECT_NE(contentsOf(errors()).find("cannot start"), std::string::npos) << contentsOf(errors());
}
