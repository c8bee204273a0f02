#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <regex>

#include "PreferenceFile.h"
#include "RunningProgram.h"
#include "update/LoopbackServer.h"

using e2e::exitedWith;
using e2e::ExitStatus;
using e2e::RunningProgram;
using e2e::runTarnwick;

namespace {

bool haveDisplay() {
    const char* display = std::getenv("DISPLAY");
    return display && *display;
}

// Starts tarnwick, waits until it is ready to be stopped, stops it with the
// signal and gives how it ended.
std::optional<ExitStatus> startThenStop(const std::vector<std::string>& arguments, int signal) {
    RunningProgram program(e2e::tarnwickExecutable(), arguments);
    EXPECT_TRUE(program.waitUntilHandling(signal, 20))
        << "not ready; stderr: " << program.standardError();
    program.sendSignal(signal);
    auto status = program.waitForExit(20);
    EXPECT_TRUE(status) << "still running; stderr: " << program.standardError();
    return status;
}

}  // namespace

TEST(ProgramOptions, VersionAndHelpPrintAndExit) {
    auto version = runTarnwick({"--version"});
    EXPECT_EQ(version.status, exitedWith(0));
    EXPECT_TRUE(
        std::regex_match(version.output, std::regex(R"(Tarnwick \d+\.\d+\.\d+ \(build \d+\)\n)")))
        << version.output;

    auto help = runTarnwick({"--help"});
    EXPECT_EQ(help.status, exitedWith(0));
    for (const char* option : {"--simulate", "--version", "--help"}) {
        EXPECT_NE(help.output.find(option), std::string::npos) << option;
    }
}

TEST(ProgramOptions, AnUnknownOptionIsRefusedWithTheUsage) {
    auto result = runTarnwick({"--bogus"});
    EXPECT_EQ(result.status, exitedWith(2));
    EXPECT_NE(result.error.find("unknown option '--bogus'"), std::string::npos) << result.error;
    EXPECT_NE(result.error.find("Usage: tarnwick"), std::string::npos);
    EXPECT_TRUE(result.output.empty());
}

TEST(ProgramLifecycle, WithoutADisplayThePlainStartSaysSoAndFails) {
    auto result = runTarnwick({}, 10, {"DISPLAY", "WAYLAND_DISPLAY"});
    EXPECT_EQ(result.status, exitedWith(1));
    EXPECT_NE(result.error.find("DISPLAY is not set"), std::string::npos) << result.error;
}

TEST(ProgramLifecycle, SimulatedDesktopQuitsCleanlyOnTermAndInterrupt) {
    if (!haveDisplay())
        GTEST_SKIP() << "needs an X display";
    EXPECT_EQ(startThenStop({"--simulate"}, SIGTERM), exitedWith(0));
    EXPECT_EQ(startThenStop({"--simulate"}, SIGINT), exitedWith(0));
}

TEST(ProgramLifecycle, PlainStartOnTheDisplayQuitsCleanlyOnTermAndInterrupt) {
    if (!haveDisplay())
        GTEST_SKIP() << "needs an X display";
    const e2e::PrivateFolders folders;
    EXPECT_EQ(startThenStop({}, SIGTERM), exitedWith(0));
    EXPECT_EQ(startThenStop({}, SIGINT), exitedWith(0));
}

// A daily update check that was due runs at start; its server never answers.
// A stop then ends the program cleanly, without waiting on the check (the
// time it took is kept in the test's report).
TEST(ProgramLifecycle, AStopDuringAnUnansweredUpdateCheckEndsCleanly) {
    if (!haveDisplay())
        GTEST_SKIP() << "needs an X display";
    using Behaviour = testsupport::LoopbackServer::Response::Behaviour;
    testsupport::LoopbackServer server;
    server.serve("/appcast.xml", {.body = "never sent", .behaviour = Behaviour::silent});
    const e2e::PrivateFolders folders;
    const auto longAgo = std::chrono::system_clock::now() - std::chrono::hours(25);
    e2e::writePreferenceFile(folders.preferenceFile(), {{"SUFeedURL", server.url("/appcast.xml")},
                                                        {"SUHasLaunchedBefore", true},
                                                        {"SUEnableAutomaticChecks", true},
                                                        {"SULastCheckTime", longAgo},
                                                        {"needsShowingInstructions", false}});
    RunningProgram program(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(program.waitUntilHandling(SIGTERM, 20)) << program.standardError();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (server.requests().empty() && std::chrono::steady_clock::now() < deadline)
        program.waitForExit(0.05);
    ASSERT_EQ(server.requests().size(), 1u) << "the due check did not start";

    const auto stopped = std::chrono::steady_clock::now();
    program.sendSignal(SIGTERM);
    EXPECT_EQ(program.waitForExit(20), exitedWith(0)) << program.standardError();
    const std::chrono::duration<double, std::milli> took =
        std::chrono::steady_clock::now() - stopped;
    ::testing::Test::RecordProperty("stop_ms", std::to_string(took.count()));
}
