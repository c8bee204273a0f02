// The real program among files, folders and readers that a careless or
// hostile program left: it starts, stays responsive, starts nothing it
// shouldn't and stops on SIGTERM.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "DesktopDriver.h"
#include "RunningProgram.h"
#include "platform/DeepPropertyLists.h"
#include "support/ScopedEnvironment.h"

namespace {

namespace fs = std::filesystem;
using e2e::ExitStatus;
using e2e::RunningProgram;

bool haveDisplay() {
    const char* display = std::getenv("DISPLAY");
    return display && *display;
}

void writeFile(const fs::path& path, const std::string& bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

std::size_t damagedFilesBeside(const fs::path& path) {
    std::size_t count = 0;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(path.parent_path(), ignored))
        count += entry.path().filename().string().find(".damaged-") != std::string::npos;
    return count;
}

// Stops the program as a session does, and gives how it ended.
std::optional<ExitStatus> stopped(RunningProgram& program) {
    program.sendSignal(SIGTERM);
    return program.waitForExit(20);
}

constexpr ExitStatus exitedCleanly{true, 0};

class HostileSurroundingsTest : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!haveDisplay())
            GTEST_SKIP() << "needs an X display";
    }
    fs::path preferences() const { return folders.preferenceFile(); }
    std::uintmax_t sizeAtPreferences() const {
        std::error_code missing;
        return fs::file_size(preferences(), missing);
    }
    // Puts something at the preference path from outside until the program
    // has moved one more file aside: while it starts, the program's own
    // saves may replace what was put there before it was read.
    bool placedUntilMovedAside(const std::function<bool()>& isThere,
                               const std::function<void()>& place) {
        const auto movedBefore = damagedFilesBeside(preferences());
        return e2e::eventually(
            [&] {
                if (damagedFilesBeside(preferences()) > movedBefore)
                    return true;
                if (!isThere())
                    place();
                return false;
            },
            20);
    }

    e2e::PrivateFolders folders;
    testsupport::ScopedEnvironment environment;
};

TEST_F(HostileSurroundingsTest, APreferenceFileNestedFiftyThousandDeepIsMovedAsideAtStartAndLater) {
    using namespace platform::fixtures;
    for (const auto& deep : {deepBinaryPropertyList(50'000), deepXMLPropertyList(50'000)}) {
        fs::remove_all(preferences().parent_path());
        writeFile(preferences(), deep);
        RunningProgram program(e2e::tarnwickExecutable(), {});
        ASSERT_TRUE(program.waitUntilHandling(SIGTERM, 30)) << program.standardError();
        EXPECT_EQ(damagedFilesBeside(preferences()), 1u);

        EXPECT_TRUE(placedUntilMovedAside([&] { return sizeAtPreferences() == deep.size(); },
                                          [&] { writeFile(preferences(), deep); }));
        EXPECT_EQ(stopped(program), exitedCleanly) << program.standardError();
    }
}

TEST_F(HostileSurroundingsTest, NamedPipesAtThePreferencePathHangNeitherTheStartNorTheRun) {
    fs::create_directories(preferences().parent_path());
    ASSERT_EQ(::mkfifo(preferences().c_str(), 0600), 0);
    RunningProgram program(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(program.waitUntilHandling(SIGTERM, 30)) << "hung at start";

    EXPECT_TRUE(placedUntilMovedAside([&] { return fs::is_fifo(preferences()); },
                                      [&] {
                                          const fs::path pipe = preferences().string() + ".pipe";
                                          ::mkfifo(pipe.c_str(), 0600);
                                          fs::rename(pipe, preferences());
                                      }));
    EXPECT_EQ(stopped(program), exitedCleanly) << "hung on the pipe moved in";
}

TEST_F(HostileSurroundingsTest, AReaderOfStandardOutputThatWentAwayEndsNothing) {
    RunningProgram program(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(program.waitUntilHandling(SIGTERM, 30)) << program.standardError();
    program.closeStandardOutput();
    // The damage is told in a line on standard output, printed right after
    // the file is moved aside and before the stop is handled.
    const std::string damage = "not a property list";
    ASSERT_TRUE(placedUntilMovedAside([&] { return sizeAtPreferences() == damage.size(); },
                                      [&] { writeFile(preferences(), damage); }));
    EXPECT_EQ(stopped(program), exitedCleanly);
}

TEST_F(HostileSurroundingsTest, WithoutHomeNoEntryInTheWorkingDirectoryIsStarted) {
    // An entry that would open folders, left where HOME unset would look.
    const fs::path workingDirectory = fs::path(folders.preferenceFile()).parent_path() / "cwd";
    const fs::path applications = workingDirectory / ".local/share/applications";
    writeFile(applications / "crafted.desktop",
              "[Desktop Entry]\nType=Application\nName=Crafted\nExec=/usr/bin/sleep 300\n"
              "MimeType=inode/directory;\n");
    writeFile(applications / "mimeapps.list",
              "[Default Applications]\ninode/directory=crafted.desktop\n");
    const fs::path before = fs::current_path();
    fs::current_path(workingDirectory);
    RunningProgram program(e2e::tarnwickExecutable(), {}, {"HOME", "XDG_DATA_HOME"});
    fs::current_path(before);
    ASSERT_TRUE(program.waitUntilHandling(SIGTERM, 30)) << program.standardOutput();
    EXPECT_TRUE(folders.processesRunning("/usr/bin/sleep").empty());
    EXPECT_EQ(stopped(program), exitedCleanly);
}

TEST_F(HostileSurroundingsTest, AFolderHandlerThatCantStartIsPassedOver) {
    const fs::path dataHome = fs::path(folders.preferenceFile()).parent_path() / "data";
    environment.set("XDG_DATA_HOME", dataHome.string());
    writeFile(dataHome / "applications/removed.desktop",
              "[Desktop Entry]\nType=Application\nName=Removed\nExec=removed-file-manager %U\n"
              "MimeType=inode/directory;\n");
    writeFile(dataHome / "applications/mimeapps.list",
              "[Default Applications]\ninode/directory=removed.desktop\n");
    RunningProgram program(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(program.waitUntilHandling(SIGTERM, 30)) << program.standardError();
    EXPECT_EQ(stopped(program), exitedCleanly);
    EXPECT_EQ(program.standardError().find("Fatal"), std::string::npos);
}

}  // namespace
