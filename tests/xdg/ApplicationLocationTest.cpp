// Where an installed application lies and which icon stands for it, by
// bundle identifier: what the Settings window's hidden applications are
// drawn from on Linux.
#include <gtest/gtest.h>

#include "platform/xdg/ProcessIdentities.h"
#include "xdg/DesktopEntryTestTree.h"

namespace platform::xdg {
namespace {

using fixtures::DesktopEntryTestTree;

TEST(ApplicationLocationTest, AnInstalledEntryOrTheFinderHasALocationAndItsIconADeletedOneNone) {
    DesktopEntryTestTree tree;
    const auto notes = tree.writeApplication(
        std::string(DesktopEntryTestTree::system) + "org.example.Notes.desktop", "Notes", "notes",
        "Icon=notes\n");
    const auto files =
        tree.writeApplication(std::string(DesktopEntryTestTree::system) + "pcmanfm.desktop",
                              "File Manager", "pcmanfm", "Icon=files\n");
    tree.writeApplication(std::string(DesktopEntryTestTree::user) + "org.example.Gone.desktop",
                          "Gone", "gone", "Hidden=true\n");
    const auto notesIcon = tree.write("usr/share/icons/hicolor/48x48/apps/notes.png", "png");
    const auto filesIcon = tree.write("usr/share/icons/hicolor/48x48/apps/files.png", "png");

    const DesktopEntryIndex entries(tree.directories());
    const DesktopEntryIcons icons(tree.directories());
    const auto identities = [&](bool withFileManager) {
        std::optional<DefaultFileManager> fileManager;
        if (withFileManager)
            fileManager.emplace(*entries.entryWithId("pcmanfm"));
        return ProcessIdentities(entries, icons, fileManager, {}, {});
    };
    const auto desktop = identities(true);

    EXPECT_EQ(desktop.applicationLocation("org.example.Notes"), notes);
    EXPECT_EQ(desktop.applicationIcon(notes), Image::file(notesIcon));
    EXPECT_EQ(desktop.applicationLocation("com.apple.finder"),
              DefaultFileManager::finderBundlePath());
    EXPECT_EQ(desktop.applicationIcon(DefaultFileManager::finderBundlePath()),
              Image::file(filesIcon));
    EXPECT_EQ(desktop.applicationLocation("pcmanfm"), files);

    EXPECT_FALSE(desktop.applicationLocation("org.example.Gone")) << "deleted";
    EXPECT_FALSE(desktop.applicationLocation("org.example.Missing"));
    EXPECT_FALSE(desktop.applicationIcon(tree.root() / "no-entry.desktop"));
    EXPECT_FALSE(identities(false).applicationLocation("com.apple.finder"));
}

}  // namespace
}  // namespace platform::xdg
