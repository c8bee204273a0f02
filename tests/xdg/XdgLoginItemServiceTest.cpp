// Launch at login as an autostart entry: written so that a session starts
// the program by its real path, read back as ours only while it starts us
// and isn't switched off, removed on unregistering, and a folder that
// can't be written is a failure text, never a crash.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>

#include "platform/sim/SimMainLoop.h"
#include "platform/xdg/DesktopEntry.h"
#include "platform/xdg/DesktopEntryExec.h"
#include "platform/xdg/XdgLoginItemService.h"
#include "xdg/DesktopEntryTestTree.h"

namespace platform::xdg {
namespace {

using fixtures::DesktopEntryTestTree;
using Status = LoginItemService::Status;

class XdgLoginItemServiceTest : public ::testing::Test {
  protected:
    XdgLoginItemService serviceFor(const std::filesystem::path& executable) {
        return XdgLoginItemService(loop, entryPath, executable);
    }

    // A program file of the test's own, so that "the same file" can be
    // asked of the file system.
    std::filesystem::path program(const std::string& relative) {
        return tree.write(relative, "#!/bin/sh\n");
    }

    void unregister(XdgLoginItemService& service, std::string* failure = nullptr) {
        bool done = false;
        service.unregisterMainApp([&](const std::string& error) {
            done = true;
            if (failure)
                *failure = error;
        });
        EXPECT_FALSE(done) << "the completion waits for a later turn";
        loop.runUntilIdle();
        EXPECT_TRUE(done);
    }

    DesktopEntryTestTree tree;
    sim::SimMainLoop loop;
    std::filesystem::path entryPath =
        XdgLoginItemService::entryPathIn(tree.directories().configHome, "harrowmere.Tarnwick");
};

TEST_F(XdgLoginItemServiceTest,
       RegisteringWritesAnEntryThatStartsTheProgramAndUnregisteringEndsIt) {
    EXPECT_EQ(entryPath, tree.root() / "home/.config/autostart/harrowmere.Tarnwick.desktop");
    auto service = serviceFor(program("opt/tarnwick/bin/tarnwick"));
    EXPECT_EQ(service.status(), Status::notRegistered);

    EXPECT_EQ(service.registerMainApp(), "");
    EXPECT_EQ(service.status(), Status::enabled);
    const auto entry = DesktopEntry::load(entryPath, "harrowmere.Tarnwick.desktop");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->type, DesktopEntry::Type::application);
    EXPECT_EQ(entry->name, "Tarnwick");
    EXPECT_EQ(desktopEntryCommandLine(entry->exec),
              std::vector<std::string>{(tree.root() / "opt/tarnwick/bin/tarnwick").string()});
    struct stat status {};
    ASSERT_EQ(::stat(entryPath.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0644u);

    // Registering again rewrites it in place.
    EXPECT_EQ(service.registerMainApp(), "");
    EXPECT_EQ(service.status(), Status::enabled);

    std::string failure = "unset";
    unregister(service, &failure);
    EXPECT_EQ(failure, "");
    EXPECT_FALSE(std::filesystem::exists(entryPath));
    EXPECT_EQ(service.status(), Status::notRegistered);
    unregister(service, &failure);
    EXPECT_EQ(failure, "") << "nothing to remove is no failure";
}

TEST_F(XdgLoginItemServiceTest,
       AnAwkwardPathIsQuotedSoThatTheEntryStillStartsTheProgramAndIsValid) {
    const auto executable = program("My Apps/100% \"real\" $HOME `x` back\\slash;/tarnwick");
    auto service = serviceFor(executable);
    ASSERT_EQ(service.registerMainApp(), "");
    EXPECT_EQ(service.status(), Status::enabled);
    const auto entry = DesktopEntry::load(entryPath, "harrowmere.Tarnwick.desktop");
    ASSERT_TRUE(entry);
    EXPECT_EQ(desktopEntryCommandLine(entry->exec), std::vector<std::string>{executable.string()});
    const auto validate = "desktop-file-validate '" + entryPath.string() + "' >/dev/null 2>&1";
    EXPECT_EQ(std::system(validate.c_str()), 0) << tree.read(entryPath);
}

TEST_F(XdgLoginItemServiceTest, AnEntryIsOursOnlyWhileItStartsThisProgramAndIsSwitchedOn) {
    const auto executable = program("usr/bin/tarnwick");
    auto service = serviceFor(executable);
    const auto entryStarting = [&](const std::string& exec, const std::string& extra = {}) {
        tree.write(entryPath.lexically_relative(tree.root()),
                   "[Desktop Entry]\nType=Application\nName=Tarnwick\nExec=" + exec + "\n" + extra);
        return service.status();
    };
    EXPECT_EQ(entryStarting(executable.string()), Status::enabled);
    EXPECT_EQ(entryStarting(executable.string() + " --flag", "X-GNOME-Autostart-enabled=true\n"),
              Status::enabled);
    EXPECT_EQ(entryStarting(executable.string(), "Hidden=true\n"), Status::notRegistered);
    EXPECT_EQ(entryStarting(executable.string(), "X-GNOME-Autostart-enabled=false\n"),
              Status::notRegistered);
    EXPECT_EQ(entryStarting("/usr/bin/xterm"), Status::notFound);
    EXPECT_EQ(entryStarting("tarnwick"), Status::notFound) << "a name is no real path";

    // The same file by another path is still this program.
    const auto link = tree.root() / "bin-link";
    std::filesystem::create_directory_symlink(executable.parent_path(), link);
    EXPECT_EQ(entryStarting((link / "tarnwick").string()), Status::enabled);

    tree.write(entryPath.lexically_relative(tree.root()), "Exec=" + executable.string() + "\n");
    EXPECT_EQ(service.status(), Status::notFound) << "damaged";

    // Registering replaces what was there with ours.
    EXPECT_EQ(service.registerMainApp(), "");
    EXPECT_EQ(service.status(), Status::enabled);
}

TEST_F(XdgLoginItemServiceTest, AFolderThatCantBeWrittenIsAFailureText) {
    tree.write("home/.config/autostart", "a file where the folder belongs");
    auto service = serviceFor(program("usr/bin/tarnwick"));
    const auto failure = service.registerMainApp();
    EXPECT_NE(failure.find("Could not create " + entryPath.parent_path().string()),
              std::string::npos)
        << failure;
    EXPECT_EQ(service.status(), Status::notRegistered);

    std::string removal;
    unregister(service, &removal);
    EXPECT_NE(removal, "") << "a path through a file can't be removed";
}

}  // namespace
}  // namespace platform::xdg
