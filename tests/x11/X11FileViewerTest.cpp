#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "platform/sim/SimMainLoop.h"
#include "platform/x11/X11FileViewer.h"
#include "x11/DesktopEntryTestTree.h"

namespace platform::x11 {
namespace {

using fixtures::DesktopEntryTestTree;
using Paths = std::vector<std::filesystem::path>;

std::string contents(const std::filesystem::path& file) {
    std::ifstream stream(file);
    std::stringstream text;
    text << stream.rdbuf();
    return text.str();
}

TEST(X11FileViewerCommandsTest, ShowItemsAsksTheSessionBusWithFileURIs) {
    const auto command = X11FileViewer::showItemsCommand(
        {"/home/ann/.config/tarnwick/harrowmere.Tarnwick.plist", "/tmp/a, b/Ünï%.txt"});
    ASSERT_EQ(command.size(), 10u);
    EXPECT_EQ(command[0], "dbus-send");
    EXPECT_EQ(command[1], "--session");
    EXPECT_EQ(command[4], "--dest=org.freedesktop.FileManager1");
    EXPECT_EQ(command[6], "/org/freedesktop/FileManager1");
    EXPECT_EQ(command[7], "org.freedesktop.FileManager1.ShowItems");
    EXPECT_EQ(command[8],
              "array:string:file:///home/ann/.config/tarnwick/harrowmere.Tarnwick.plist,"
              "file:///tmp/a%2C%20b/%C3%9Cn%C3%AF%25.txt")
        << "commas inside an item would split it";
    EXPECT_EQ(command[9], "string:");
}

TEST(X11FileViewerCommandsTest, FoldersHoldingTheItemsEachOnce) {
    EXPECT_EQ(X11FileViewer::foldersHolding({"/a/b/c.plist", "/a/b/d", "/a/x/", "/a/b/../e"}),
              (Paths{"/a/b", "/a"}));
    EXPECT_EQ(X11FileViewer::foldersHolding({"/"}), (Paths{"/"}));
}

TEST(X11FileViewerCommandsTest, TheFileManagerOpensTheFolder) {
    DesktopEntry entry;
    entry.exec = "pcmanfm %U";
    sim::SimMainLoop loop;
    X11ProcessLauncher launcher(loop);
    const X11FileViewer viewer(launcher, DefaultFileManager(entry));
    EXPECT_EQ(viewer.openFolderCommand("/home/ann/.local/share"),
              (std::vector<std::string>{"pcmanfm", "/home/ann/.local/share"}));
    const X11FileViewer without(launcher, std::nullopt);
    EXPECT_TRUE(without.openFolderCommand("/tmp").empty());
}

// The viewer with stand-ins for the session bus's client and the file
// manager, found first in PATH, that write down how they were called.
class X11FileViewerTest : public ::testing::Test {
  protected:
    void SetUp() override {
        const char* path = std::getenv("PATH");
        savedPath_ = path ? path : "";
        ::setenv("PATH", ((tree.root() / "bin").string() + ":" + savedPath_).c_str(), 1);
        writeProgram("files", "echo \"$@\" >> " + (tree.root() / "opened").string());
    }
    void TearDown() override { ::setenv("PATH", savedPath_.c_str(), 1); }

    void writeProgram(const std::string& name, const std::string& body) {
        const auto file = tree.write("bin/" + name, "#!/bin/sh\n" + body + "\n");
        ::chmod(file.c_str(), 0755);
    }
    // A bus client that records the call and answers with the status.
    void busAnswers(int status) {
        writeProgram("dbus-send", "echo \"$@\" >> " + (tree.root() / "called").string() +
                                      "; exit " + std::to_string(status));
    }
    DefaultFileManager fileManager() {
        DesktopEntry entry;
        entry.id = "files.desktop";
        entry.exec = "files %U";
        return DefaultFileManager(entry);
    }
    bool waitForFile(const char* name) {
        return loop.runUntil([&] { return std::filesystem::exists(tree.root() / name); });
    }

    DesktopEntryTestTree tree;
    sim::SimMainLoop loop;
    X11ProcessLauncher launcher{loop};
    std::string savedPath_;
};

TEST_F(X11FileViewerTest, AFileManagerOnTheBusShowsTheItems) {
    busAnswers(0);
    X11FileViewer viewer(launcher, fileManager());
    viewer.activateFileViewerSelectingURLs({"/srv/notes/today.txt"});
    ASSERT_TRUE(waitForFile("called"));
    EXPECT_NE(
        contents(tree.root() / "called").find("ShowItems array:string:file:///srv/notes/today.txt"),
        std::string::npos);
    loop.runUntil([] { return false; }, 0.3);
    EXPECT_FALSE(std::filesystem::exists(tree.root() / "opened")) << "no folder opened as well";
}

TEST_F(X11FileViewerTest, WithoutOneTheFileManagerOpensTheFolders) {
    busAnswers(1);
    X11FileViewer viewer(launcher, fileManager());
    viewer.activateFileViewerSelectingURLs({"/srv/notes/today.txt", "/srv/notes/", "/srv/x"});
    ASSERT_TRUE(loop.runUntil([&] {
        return contents(tree.root() / "opened") == "/srv/notes\n/srv\n" ||
               contents(tree.root() / "opened") == "/srv\n/srv/notes\n";
    })) << contents(tree.root() / "opened");
}

TEST_F(X11FileViewerTest, WithoutABusClientTheFolderOpensAtOnce) {
    ::setenv("PATH", (tree.root() / "bin").string().c_str(), 1);  // no dbus-send anywhere
    X11FileViewer viewer(launcher, fileManager());
    viewer.activateFileViewerSelectingURLs({"/srv/notes/today.txt"});
    ASSERT_TRUE(waitForFile("opened"));
    EXPECT_EQ(contents(tree.root() / "opened"), "/srv/notes\n");

    X11FileViewer nothing(launcher, std::nullopt);
    nothing.activateFileViewerSelectingURLs({"/srv/x"});
    nothing.activateFileViewerSelectingURLs({});
    loop.runUntil([] { return false; }, 0.2);
    EXPECT_EQ(contents(tree.root() / "opened"), "/srv/notes\n");
}

}  // namespace
}  // namespace platform::x11
