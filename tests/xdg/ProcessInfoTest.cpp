#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

#include "platform/xdg/ProcessInfo.h"
#include "xdg/ProcessTestChild.h"

namespace platform::xdg {
namespace {

using fixtures::ProcessTestChild;
using ::testing::Contains;
using ::testing::ElementsAre;

TEST(ProcessInfoTest, ReadsThisProcess) {
    const auto info = ProcessInfo::read(::getpid());
    EXPECT_EQ(info.executable, currentExecutable());
    EXPECT_EQ(info.executable.filename(), program_invocation_short_name);
    EXPECT_FALSE(info.name.empty());
    ASSERT_FALSE(info.commandLine.empty());
    EXPECT_THAT(info.executableNames(), Contains(program_invocation_short_name));
    EXPECT_TRUE(isProcessAlive(::getpid()));
    EXPECT_THAT(allProcessIdentifiers(), Contains(::getpid()));
}

TEST(ProcessInfoTest, AProcessThatIsGoneReadsEmpty) {
    ProcessTestChild child(ProcessTestChild::Behaviour::exitAtOnce);
    child.waitUntilEnded();
    EXPECT_FALSE(isProcessAlive(child.pid())) << "a zombie has ended";
    EXPECT_TRUE(ProcessInfo::read(child.pid()).empty());
    child.reap();
    EXPECT_FALSE(isProcessAlive(child.pid()));
    EXPECT_TRUE(ProcessInfo::read(child.pid()).empty());
    EXPECT_TRUE(ProcessInfo::read(0).empty());
    EXPECT_TRUE(ProcessInfo::read(-5).empty());
}

TEST(ProcessInfoTest, NamesAScriptByTheScriptItRuns) {
    const ProcessInfo script{7, "/usr/bin/python3.11", "notes", {"python3", "-u", "/opt/notes"}};
    EXPECT_THAT(script.executableNames(), ElementsAre("python3.11", "python3", "notes"));
    const ProcessInfo shell{8, "/usr/bin/bash", "bash", {"/bin/sh", "/usr/bin/start-thing"}};
    EXPECT_THAT(shell.executableNames(), ElementsAre("bash", "sh", "start-thing"));
    const ProcessInfo program{9, "/usr/bin/shotwell", "shotwell", {"shotwell", "photo"}};
    EXPECT_THAT(program.executableNames(), ElementsAre("shotwell"));
}

}  // namespace
}  // namespace platform::xdg
