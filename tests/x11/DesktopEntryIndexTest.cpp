#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/x11/DesktopEntryIndex.h"
#include "x11/DesktopEntryTestTree.h"

namespace platform::x11 {
namespace {

using fixtures::DesktopEntryTestTree;

class DesktopEntryIndexTest : public ::testing::Test {
  protected:
    DesktopEntryIndex makeIndex() const {
        return DesktopEntryIndex(tree.directories(), DesktopEntryLocale());
    }

    DesktopEntryTestTree tree;
};

TEST_F(DesktopEntryIndexTest, EarlierDirectoriesWinForTheSameId) {
    tree.writeApplication(std::string(DesktopEntryTestTree::system) + "editor.desktop", "System",
                          "editor");
    tree.writeApplication(std::string(DesktopEntryTestTree::local) + "editor.desktop", "Local",
                          "editor");
    tree.writeApplication(std::string(DesktopEntryTestTree::system) + "viewer.desktop", "Viewer",
                          "viewer");
    tree.writeApplication(std::string(DesktopEntryTestTree::local) + "viewer.desktop", "Viewer",
                          "viewer", "Hidden=true\n");
    tree.writeApplication(std::string(DesktopEntryTestTree::user) + "editor.desktop", "Mine",
                          "editor");
    const auto index = makeIndex();
    ASSERT_EQ(index.entries().size(), 2u);
    EXPECT_EQ(index.entryWithId("editor.desktop")->name, "Mine");
    EXPECT_EQ(index.entryWithId("editor")->name, "Mine") << "found without the suffix too";
    EXPECT_TRUE(index.entryWithId("viewer")->hidden) << "a hidden entry deletes the system one";
    EXPECT_FALSE(index.entryForExecutableName("viewer"));
    EXPECT_FALSE(index.entryWithId("missing"));
}

TEST_F(DesktopEntryIndexTest, SubfoldersGiveDashedIdsAndDamagedFilesAreSkipped) {
    tree.writeApplication(std::string(DesktopEntryTestTree::system) + "kde4/okular.desktop",
                          "Okular", "okular %U");
    tree.write(std::string(DesktopEntryTestTree::system) + "broken.desktop",
               "\x7f"
               "ELF garbage");
    tree.write(std::string(DesktopEntryTestTree::system) + "notes.txt", "[Desktop Entry]\n");
    const auto index = makeIndex();
    ASSERT_EQ(index.entries().size(), 1u);
    EXPECT_EQ(index.entries().front().id, "kde4-okular.desktop");
    EXPECT_EQ(index.entryForExecutableName("okular"), &index.entries().front());
}

TEST_F(DesktopEntryIndexTest, OnlyEntriesDirectlyInSystemDirectoriesAreEligible) {
    const auto system =
        tree.writeApplication(std::string(DesktopEntryTestTree::system) + "a.desktop", "A", "a");
    const auto local =
        tree.writeApplication(std::string(DesktopEntryTestTree::local) + "b.desktop", "B", "b");
    const auto user =
        tree.writeApplication(std::string(DesktopEntryTestTree::user) + "c.desktop", "C", "c");
    const auto nested = tree.writeApplication(
        std::string(DesktopEntryTestTree::system) + "games/d.desktop", "D", "d");
    const auto elsewhere = tree.writeApplication("opt/e.desktop", "E", "e");
    const auto index = makeIndex();
    EXPECT_TRUE(index.isInSystemApplicationsDirectory(system));
    EXPECT_TRUE(index.isInSystemApplicationsDirectory(local));
    EXPECT_FALSE(index.isInSystemApplicationsDirectory(user));
    EXPECT_FALSE(index.isInSystemApplicationsDirectory(nested));
    EXPECT_FALSE(index.isInSystemApplicationsDirectory(elsewhere));
}

TEST_F(DesktopEntryIndexTest, TheUserDirectoryStaysOutEvenWhenItIsASystemOneToo) {
    auto directories = tree.directories();
    directories.dataDirs.push_back(directories.dataHome);
    const auto user =
        tree.writeApplication(std::string(DesktopEntryTestTree::user) + "c.desktop", "C", "c");
    const DesktopEntryIndex index(directories, DesktopEntryLocale());
    EXPECT_FALSE(index.isInSystemApplicationsDirectory(user));
}

TEST_F(DesktopEntryIndexTest, FindsApplicationsByExecutable) {
    const std::string system = DesktopEntryTestTree::system;
    tree.writeApplication(system + "a-settings.desktop", "Settings", "tool --settings",
                          "NoDisplay=true\n");
    tree.writeApplication(system + "b-main.desktop", "Tool", "/usr/bin/tool %F");
    tree.writeApplication(system + "c-viewer.desktop", "Viewer", "viewer-wrapper",
                          "TryExec=/usr/lib/viewer/viewer-bin\n");
    tree.writeApplication(system + "pcmanfm-desktop-pref.desktop", "Prefs",
                          "pcmanfm --desktop-pref");
    tree.writeApplication(system + "pcmanfm.desktop", "PCManFM", "pcmanfm %U");
    tree.write(system + "link.desktop", "[Desktop Entry]\nType=Link\nName=L\nExec=linked\n");
    const auto index = makeIndex();

    EXPECT_EQ(index.entryForExecutableName("tool")->id, "b-main.desktop")
        << "a visible entry before a NoDisplay one";
    EXPECT_EQ(index.entryForExecutableName("pcmanfm")->id, "pcmanfm.desktop")
        << "the entry named after the program first";
    EXPECT_EQ(index.entryForExecutableName("viewer-bin")->id, "c-viewer.desktop");
    EXPECT_EQ(index.entryForExecutableName("viewer-wrapper")->id, "c-viewer.desktop");
    EXPECT_FALSE(index.entryForExecutableName("linked"));
    EXPECT_FALSE(index.entryForExecutableName("unknown"));
}

TEST_F(DesktopEntryIndexTest, FindsTheApplicationOfAProcess) {
    tree.writeApplication(std::string(DesktopEntryTestTree::system) + "frob.desktop", "Frob",
                          "frob-tool");
    const auto index = makeIndex();
    ProcessInfo script{42,
                       "/usr/bin/python3.11",
                       "python3",
                       {"/usr/bin/python3", "-s", "/usr/bin/frob-tool", "--x"}};
    EXPECT_EQ(index.entryForProcess(script)->id, "frob.desktop");
    ProcessInfo renamed{43, "/opt/frob/bin/frob-tool", "frob-main", {"frob-main"}};
    EXPECT_EQ(index.entryForProcess(renamed)->id, "frob.desktop");
    EXPECT_FALSE(index.entryForProcess(ProcessInfo{44, {}, {}, {}}));
}

TEST_F(DesktopEntryIndexTest, FindsApplicationsByWindowClass) {
    const std::string system = DesktopEntryTestTree::system;
    tree.writeApplication(system + "org.example.Notes.desktop", "Notes", "notes",
                          "StartupWMClass=NotesMain\n");
    tree.writeApplication(system + "firefox.desktop", "Firefox", "firefox");
    const auto index = makeIndex();
    EXPECT_EQ(index.entryForWindowClass("notes", "NotesMain")->name, "Notes");
    EXPECT_EQ(index.entryForWindowClass("NotesMain", "Other")->name, "Notes");
    EXPECT_EQ(index.entryForWindowClass("Navigator", "Firefox")->name, "Firefox");
    EXPECT_FALSE(index.entryForWindowClass("xterm", "XTerm"));
    EXPECT_FALSE(index.entryForWindowClass("", ""));
}

TEST_F(DesktopEntryIndexTest, ReloadSeesNewEntries) {
    auto index = makeIndex();
    EXPECT_TRUE(index.entries().empty());
    tree.writeApplication(std::string(DesktopEntryTestTree::user) + "new.desktop", "New", "new");
    index.reload();
    EXPECT_EQ(index.entryWithId("new")->name, "New");
}

}  // namespace
}  // namespace platform::x11
