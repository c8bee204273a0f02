#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/xdg/DefaultFileManager.h"
#include "xdg/DesktopEntryTestTree.h"

namespace platform::xdg {
namespace {

using fixtures::DesktopEntryTestTree;
using ::testing::ElementsAre;

class DefaultFileManagerTest : public ::testing::Test {
  protected:
    DefaultFileManagerTest() {
        const std::string system = DesktopEntryTestTree::system;
        tree.writeApplication(system + "pcmanfm.desktop", "PCManFM", "/usr/bin/pcmanfm %U",
                              "MimeType=inode/directory;\n");
        tree.writeApplication(system + "nautilus.desktop", "Files", "nautilus --new-window %U",
                              "MimeType=inode/directory;\n");
        tree.writeApplication(system + "thunar.desktop", "Thunar", "thunar %F");
        tree.writeApplication(system + "code.desktop", "Code", "code %F",
                              "MimeType=text/plain;inode/directory;\n");
    }

    std::string defaultId() {
        auto directories = tree.directories();
        directories.currentDesktops = currentDesktops;
        const DesktopEntryIndex index(directories, DesktopEntryLocale());
        const auto fileManager = DefaultFileManager::find(index);
        return fileManager ? fileManager->entry().id : "(none)";
    }

    void writeDefaults(const std::string& relative, const std::string& ids) {
        tree.write(relative, "[Default Applications]\ninode/directory=" + ids + "\n");
    }

    DesktopEntryTestTree tree;
    std::vector<std::string> currentDesktops;
};

TEST_F(DefaultFileManagerTest, TheMostImportantListNamingAnInstalledApplicationWins) {
    writeDefaults("usr/share/applications/mimeapps.list", "nautilus.desktop");
    EXPECT_EQ(defaultId(), "nautilus.desktop");
    writeDefaults("home/.config/mimeapps.list", "gone.desktop");
    tree.write("home/.config/mimeapps.list.broken", "garbage");
    EXPECT_EQ(defaultId(), "nautilus.desktop") << "a list of uninstalled defaults falls through";
    writeDefaults("etc/xdg/mimeapps.list", "thunar.desktop");
    EXPECT_EQ(defaultId(), "thunar.desktop");
    writeDefaults("home/.config/mimeapps.list", "missing.desktop;pcmanfm.desktop;");
    // The current desktop's own list comes first at its level, for that desktop only.
    writeDefaults("home/.config/lxde-mimeapps.list", "nautilus.desktop");
    EXPECT_EQ(defaultId(), "pcmanfm.desktop") << "an uninstalled default is passed over";
    currentDesktops = {"LXDE"};
    EXPECT_EQ(defaultId(), "nautilus.desktop");
}

TEST_F(DefaultFileManagerTest, WithoutDefaultsAddedThenDeclaredAssociationsCount) {
    EXPECT_EQ(defaultId(), "code.desktop") << "the first that declares folders";
    tree.write("home/.config/mimeapps.list",
               "[Removed Associations]\ninode/directory=code.desktop;\n"
               "[Added Associations]\ninode/directory=code.desktop;\n");
    EXPECT_EQ(defaultId(), "nautilus.desktop");
    tree.write("usr/share/applications/mimeapps.list",
               "[Added Associations]\ninode/directory=thunar.desktop;\n");
    EXPECT_EQ(defaultId(), "thunar.desktop");

    DesktopEntryTestTree empty;
    EXPECT_FALSE(DefaultFileManager::find(DesktopEntryIndex(empty.directories(), {})))
        << "no application opens folders";
}

TEST_F(DefaultFileManagerTest, ListFilesGoFromTheUserToTheSystem) {
    DesktopEntryDirectories directories;
    directories.configHome = "/h/.config";
    directories.configDirs = {"/etc/xdg"};
    directories.dataHome = "/h/.local/share";
    directories.dataDirs = {"/usr/share"};
    directories.currentDesktops = {"LXDE"};
    EXPECT_THAT(MimeApps::listFiles(directories),
                ElementsAre("/h/.config/lxde-mimeapps.list", "/h/.config/mimeapps.list",
                            "/etc/xdg/lxde-mimeapps.list", "/etc/xdg/mimeapps.list",
                            "/h/.local/share/applications/lxde-mimeapps.list",
                            "/h/.local/share/applications/mimeapps.list",
                            "/usr/share/applications/lxde-mimeapps.list",
                            "/usr/share/applications/mimeapps.list"));
}

TEST_F(DefaultFileManagerTest, StartsInItsBackgroundModeWhereItHasOne) {
    const auto command = [](std::string exec) {
        DesktopEntry entry;
        entry.exec = std::move(exec);
        return DefaultFileManager(entry).backgroundCommandLine();
    };
    EXPECT_THAT(command("/usr/bin/pcmanfm %U"), ElementsAre("/usr/bin/pcmanfm", "--daemon-mode"));
    EXPECT_THAT(command("nautilus --new-window %U"),
                ElementsAre("nautilus", "--gapplication-service"));
    EXPECT_THAT(command("caja --browser %U"), ElementsAre("caja", "--browser"));
    EXPECT_TRUE(command("").empty());
}

}  // namespace
}  // namespace platform::xdg
