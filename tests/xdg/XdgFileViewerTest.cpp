#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>

#include "platform/sim/SimMainLoop.h"
#include "platform/xdg/XdgFileViewer.h"
#include "support/ScopedEnvironment.h"
#include "xdg/DesktopEntryTestTree.h"

namespace platform::xdg {
namespace {

using fixtures::DesktopEntryTestTree;
using Paths = std::vector<std::filesystem::path>;

TEST(X11FileViewerCommandsTest, ShowItemsAsksTheSessionBusWithFileURIs) {
    const auto command = XdgFileViewer::showItemsCommand(
        {"/home/ann/.config/tarnwick/harrowmere.Tarnwick.plist", "/tmp/a, b/Ünï%.txt"});
    EXPECT_EQ(command,
              (std::vector<std::string>{
                  "dbus-send", "--session", "--print-reply", "--reply-timeout=5000",
                  "--dest=org.freedesktop.FileManager1", "--type=method_call",
                  "/org/freedesktop/FileManager1", "org.freedesktop.FileManager1.ShowItems",
                  "array:string:file:///home/ann/.config/tarnwick/harrowmere.Tarnwick.plist,"
                  "file:///tmp/a%2C%20b/%C3%9Cn%C3%AF%25.txt",
                  "string:"}))
        << "commas inside an item would split it";
}

TEST(X11FileViewerCommandsTest, FoldersHoldingTheItemsEachOnce) {
    EXPECT_EQ(XdgFileViewer::foldersHolding({"/a/b/c.plist", "/a/b/d", "/a/x/", "/a/b/../e"}),
              (Paths{"/a/b", "/a"}));
    EXPECT_EQ(XdgFileViewer::foldersHolding({"/"}), (Paths{"/"}));
}

// The viewer with stand-ins for the session bus's client and the file
// manager, found first in PATH, that write down how they were called.
class X11FileViewerTest : public ::testing::Test {
  protected:
    void SetUp() override {
        const char* path = std::getenv("PATH");
        environment.set("PATH", (tree.root() / "bin").string() + ":" + (path ? path : ""));
        writeProgram("files", "echo \"$@\" >> " + (tree.root() / "opened").string());
    }

    void writeProgram(const std::string& name, const std::string& body) {
        const auto file = tree.write("bin/" + name, "#!/bin/sh\n" + body + "\n");
        ::chmod(file.c_str(), 0755);
    }
    // A bus client that records the call and answers with the status.
    void busAnswers(int status) {
        writeProgram("dbus-send", "echo \"$@\" >> " + (tree.root() / "called").string() +
                                      "; exit " + std::to_string(status));
    }
    static DefaultFileManager fileManager() {
        DesktopEntry entry;
        entry.id = "files.desktop";
        entry.exec = "files %U";
        return DefaultFileManager(entry);
    }
    void settle() {
        loop.runUntil([] { return false; }, 0.3);
    }

    testsupport::ScopedEnvironment environment;
    DesktopEntryTestTree tree;
    sim::SimMainLoop loop;
    XdgProcessLauncher launcher{loop};
    XdgFileViewer viewer{launcher, fileManager()};
};

TEST_F(X11FileViewerTest, AFileManagerOnTheBusShowsTheItems) {
    busAnswers(0);
    viewer.activateFileViewerSelectingURLs({"/srv/notes/today.txt"});
    ASSERT_TRUE(loop.runUntil([&] { return !tree.read("called").empty(); }));
    EXPECT_NE(tree.read("called").find("ShowItems array:string:file:///srv/notes/today.txt"),
              std::string::npos);
    settle();
    EXPECT_FALSE(std::filesystem::exists(tree.root() / "opened")) << "no folder opened as well";
}

TEST_F(X11FileViewerTest, WithoutOneTheFileManagerOpensTheFolders) {
    busAnswers(1);
    viewer.activateFileViewerSelectingURLs({"/srv/notes/today.txt", "/srv/notes/", "/srv/x"});
    ASSERT_TRUE(loop.runUntil([&] {
        return tree.read("opened") == "/srv/notes\n/srv\n" ||
               tree.read("opened") == "/srv\n/srv/notes\n";
    })) << tree.read("opened");
}

TEST_F(X11FileViewerTest, WithoutABusClientTheFolderOpensAtOnce) {
    environment.set("PATH", (tree.root() / "bin").string());  // no dbus-send anywhere
    viewer.activateFileViewerSelectingURLs({"/srv/notes/today.txt"});
    ASSERT_TRUE(loop.runUntil([&] { return !tree.read("opened").empty(); }));
    EXPECT_EQ(tree.read("opened"), "/srv/notes\n");

    XdgFileViewer nothing(launcher, std::nullopt);
    nothing.activateFileViewerSelectingURLs({"/srv/x"});
    nothing.activateFileViewerSelectingURLs({});
    settle();
    EXPECT_EQ(tree.read("opened"), "/srv/notes\n");
}

}  // namespace
}  // namespace platform::xdg
