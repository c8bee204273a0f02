#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/xdg/DesktopEntryIndex.h"
#include "xdg/DesktopEntryTestTree.h"

namespace platform::xdg {
namespace {

using fixtures::DesktopEntryTestTree;

class DesktopEntryIndexTest : public ::testing::Test {
  protected:
    DesktopEntryIndex makeIndex() const {
        return DesktopEntryIndex(tree.directories(), DesktopEntryLocale());
    }
    void writeSystem(const std::string& file, std::string_view name, std::string_view exec,
                     std::string_view extra = {}) {
        tree.writeApplication(DesktopEntryTestTree::system + file, name, exec, extra);
    }

    DesktopEntryTestTree tree;
};

TEST_F(DesktopEntryIndexTest, EarlierDirectoriesWinSubfoldersGiveDashedIdsDamagedFilesAreSkipped) {
    writeSystem("editor.desktop", "System", "editor");
    tree.writeApplication(std::string(DesktopEntryTestTree::local) + "editor.desktop", "Local",
                          "editor");
    writeSystem("viewer.desktop", "Viewer", "viewer");
    tree.writeApplication(std::string(DesktopEntryTestTree::local) + "viewer.desktop", "Viewer",
                          "viewer", "Hidden=true\n");
    writeSystem("kde4/okular.desktop", "Okular", "okular %U");
    tree.write(std::string(DesktopEntryTestTree::system) + "broken.desktop",
               "\x7f"
               "ELF garbage");
    tree.write(std::string(DesktopEntryTestTree::system) + "notes.txt", "[Desktop Entry]\n");
    auto index = makeIndex();
    ASSERT_EQ(index.entries().size(), 3u);
    EXPECT_EQ(index.entryWithId("editor.desktop")->name, "Local");
    EXPECT_EQ(index.entryWithId("kde4-okular")->name, "Okular") << "found without the suffix too";
    EXPECT_TRUE(index.entryWithId("viewer")->hidden) << "a hidden entry deletes the system one";
    EXPECT_FALSE(index.entryForExecutableName("viewer"));
    EXPECT_FALSE(index.entryWithId("missing"));

    tree.writeApplication(std::string(DesktopEntryTestTree::user) + "editor.desktop", "Mine",
                          "editor");
    index.reload();
    EXPECT_EQ(index.entryWithId("editor")->name, "Mine");
}

TEST_F(DesktopEntryIndexTest, FindsTheApplicationOfAProgramOrAProcess) {
    writeSystem("a-settings.desktop", "Settings", "tool --settings", "NoDisplay=true\n");
    writeSystem("b-main.desktop", "Tool", "/usr/bin/tool %F");
    writeSystem("c-viewer.desktop", "Viewer", "viewer-wrapper",
                "TryExec=/usr/lib/viewer/viewer-bin\n");
    writeSystem("pcmanfm-desktop-pref.desktop", "Prefs", "pcmanfm --desktop-pref");
    writeSystem("pcmanfm.desktop", "PCManFM", "pcmanfm %U");
    writeSystem("frob.desktop", "Frob", "frob-tool");
    tree.write(std::string(DesktopEntryTestTree::system) + "link.desktop",
               "[Desktop Entry]\nType=Link\nName=L\nExec=linked\n");
    const auto index = makeIndex();

    EXPECT_EQ(index.entryForExecutableName("tool")->id, "b-main.desktop")
        << "a visible entry before a NoDisplay one";
    EXPECT_EQ(index.entryForExecutableName("pcmanfm")->id, "pcmanfm.desktop")
        << "the entry named after the program first";
    EXPECT_EQ(index.entryForExecutableName("viewer-bin")->id, "c-viewer.desktop");
    EXPECT_EQ(index.entryForExecutableName("viewer-wrapper")->id, "c-viewer.desktop");
    EXPECT_FALSE(index.entryForExecutableName("linked"));
    EXPECT_FALSE(index.entryForExecutableName("unknown"));

    const ProcessInfo script{42,
                             "/usr/bin/python3.11",
                             "python3",
                             {"/usr/bin/python3", "-s", "/usr/bin/frob-tool", "--x"}};
    EXPECT_EQ(index.entryForProcess(script)->id, "frob.desktop");
    const ProcessInfo renamed{43, "/opt/frob/bin/frob-tool", "frob-main", {"frob-main"}};
    EXPECT_EQ(index.entryForProcess(renamed)->id, "frob.desktop");
    EXPECT_FALSE(index.entryForProcess(ProcessInfo{44, {}, {}, {}}));
}

TEST_F(DesktopEntryIndexTest, FindsApplicationsByWindowClass) {
    writeSystem("org.example.Notes.desktop", "Notes", "notes", "StartupWMClass=NotesMain\n");
    writeSystem("firefox.desktop", "Firefox", "firefox");
    const auto index = makeIndex();
    EXPECT_EQ(index.entryForWindowClass("notes", "NotesMain")->name, "Notes");
    EXPECT_EQ(index.entryForWindowClass("NotesMain", "Other")->name, "Notes");
    EXPECT_EQ(index.entryForWindowClass("Navigator", "Firefox")->name, "Firefox");
    EXPECT_FALSE(index.entryForWindowClass("xterm", "XTerm"));
    EXPECT_FALSE(index.entryForWindowClass("", ""));
}

// An editor whose settings entry runs the same program and sorts first, a
// program with a helper entry, and entries known by their reverse-domain id.
TEST_F(DesktopEntryIndexTest, AnApplicationsOwnEntryBeatsItsSettingsAndHelperEntries) {
    writeSystem("org.xfce.mousepad-settings.desktop", "Text Editor Settings",
                "mousepad --preferences");
    writeSystem("org.xfce.mousepad.desktop", "Mousepad", "mousepad %U");
    writeSystem("a-viewer-new-window.desktop", "New Viewer Window", "viewer --new-window");
    writeSystem("b-viewer.desktop", "Viewer", "viewer %F");
    writeSystem("org.example.Editor.desktop", "Editor", "launch-editor");
    writeSystem("paint.desktop", "Paint Helper", "paint --helper", "NoDisplay=true\n");
    writeSystem("org.example.paint.desktop", "Paint", "paint %F");
    const auto index = makeIndex();

    EXPECT_EQ(index.entryForExecutableName("mousepad")->name, "Mousepad");
    EXPECT_EQ(index.entryForExecutableName("viewer")->name, "Viewer")
        << "the entry that starts the program as it stands";
    EXPECT_EQ(index.entryForWindowClass("mousepad", "Mousepad")->name, "Mousepad");
    EXPECT_EQ(index.entryForWindowClass("paint", "Paint")->name, "Paint")
        << "an entry shown in menus before a NoDisplay one";
    EXPECT_EQ(index.entryForApplicationId("org.xfce.mousepad")->name, "Mousepad");
    EXPECT_EQ(index.entryForApplicationId("org.example.Editor")->name, "Editor");
    EXPECT_FALSE(index.entryForApplicationId("org.example.Missing"));
    EXPECT_FALSE(index.entryForApplicationId(""));
}

}  // namespace
}  // namespace platform::xdg
