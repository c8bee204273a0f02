#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "platform/xdg/DefaultFileManager.h"
#include "platform/xdg/ProcessIdentities.h"
#include "support/ScopedEnvironment.h"
#include "support/StandardOutput.h"
#include "xdg/DesktopEntryTestTree.h"
#include "xdg/ProcessTestChild.h"

namespace platform::xdg {
namespace {

using fixtures::DesktopEntryTestTree;
using ::testing::ElementsAre;

class DefaultFileManagerTest : public ::testing::Test {
  protected:
    // The programs the entries start are installed in a folder of the
    // tree's on the search path: only a file manager that can start counts.
    DefaultFileManagerTest() {
        for (const char* program : {"pcmanfm", "nautilus", "thunar", "code"})
            installProgram(program);
        environment.set("PATH", "relative/bin:" + (tree.root() / "bin").string() + ":");
        const std::string system = DesktopEntryTestTree::system;
        tree.writeApplication(system + "pcmanfm.desktop", "PCManFM", "pcmanfm %U",
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
        const auto fileManager =
            DefaultFileManager::find(index, MimeApps(directories), runningPrograms);
        return fileManager ? fileManager->entry().id : "(none)";
    }

    std::filesystem::path installProgram(const std::string& name,
                                         const std::string& folder = "bin/") {
        const auto program = tree.write(folder + name, "#!/bin/sh\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        return program;
    }

    void writeDefaults(const std::string& relative, const std::string& ids) {
        tree.write(relative, "[Default Applications]\ninode/directory=" + ids + "\n");
    }

    DesktopEntryTestTree tree;
    testsupport::ScopedEnvironment environment;
    std::vector<std::string> currentDesktops;
    std::set<std::string> runningPrograms;
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
    quillbox::CapturedOutput output;
    EXPECT_FALSE(DefaultFileManager::find(DesktopEntryIndex(empty.directories(), {})))
        << "no application opens folders";
    EXPECT_THAT(output.lines(),
                ElementsAre("No file manager is installed: no application opens folders."));
}

TEST_F(DefaultFileManagerTest, WithoutAChoiceInTheListsARunningFileManagerComesFirst) {
    EXPECT_EQ(defaultId(), "code.desktop") << "none runs: the first that declares folders";
    runningPrograms = {"bash", "pcmanfm"};
    EXPECT_EQ(defaultId(), "pcmanfm.desktop");
    runningPrograms = {"nautilus", "pcmanfm"};
    EXPECT_EQ(defaultId(), "nautilus.desktop") << "among running ones, the usual order";
    tree.write(std::string(DesktopEntryTestTree::system) + "thunar.desktop",
               "[Desktop Entry]\nType=Application\nName=Thunar\nExec=thunar %F\n"
               "TryExec=Thunar\nMimeType=inode/directory;\n");
    installProgram("Thunar");
    runningPrograms = {"Thunar"};
    EXPECT_EQ(defaultId(), "thunar.desktop") << "known by its TryExec program";

    tree.write("usr/share/applications/mimeapps.list",
               "[Added Associations]\ninode/directory=code.desktop;\n");
    EXPECT_EQ(defaultId(), "code.desktop") << "an association in the lists is a choice";
    writeDefaults("home/.config/mimeapps.list", "nautilus.desktop");
    EXPECT_EQ(defaultId(), "nautilus.desktop") << "so is a default";
}

// A real process: the file manager's program, as the session runs it.
TEST_F(DefaultFileManagerTest, FindsTheFileManagerThatRunsOnThisDisplay) {
    const auto program = tree.write("bin/zz-folders", "#!/bin/sh\n/bin/sleep 30\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    tree.writeApplication(std::string(DesktopEntryTestTree::system) + "zz-folders.desktop",
                          "Folders", "zz-folders", "MimeType=inode/directory;\n");
    const DesktopEntryIndex index(tree.directories(), DesktopEntryLocale());
    EXPECT_EQ(DefaultFileManager::find(index)->entry().id, "code.desktop");

    const fixtures::ProcessTestChild running({"/bin/sh", program.string()});
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!runningProgramNames().contains("zz-folders") &&
           std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(DefaultFileManager::find(index)->entry().id, "zz-folders.desktop");
}

// Each of these used to be chosen, and then nothing could play the Finder.
TEST_F(DefaultFileManagerTest, OnlyAFileManagerThatCanStartIsChosenAndOtherwiseAllAreNamed) {
    const std::string system = DesktopEntryTestTree::system;
    const std::pair<const char*, const char*> broken[] = {
        {"removed.desktop", "Exec=removed-file-manager %U\n"},
        {"empty.desktop", "Exec=\n"},
        {"fieldcode.desktop", "Exec=%U\n"},
        {"quoting.desktop", "Exec=\"pcmanfm %U\n"},
        {"relative.desktop", "Exec=bin/pcmanfm\n"},
        {"hidden-path.desktop", "Exec=only-in-working-directory\n"},
        {"tryexec.desktop", "Exec=pcmanfm\nTryExec=gone-helper\n"},
    };
    std::string ids;
    for (const auto& [file, exec] : broken) {
        tree.write(system + file, std::string("[Desktop Entry]\nType=Application\nName=Broken\n") +
                                      exec + "MimeType=inode/directory;\n");
        ids += std::string(file) + ";";
    }
    installProgram("only-in-working-directory", "relative/bin/");
    // From within the tree, relative paths would find the programs.
    struct WorkingDirectory {
        std::filesystem::path previous = std::filesystem::current_path();
        ~WorkingDirectory() { std::filesystem::current_path(previous); }
    } restored;
    std::filesystem::current_path(tree.root());
    writeDefaults("home/.config/mimeapps.list", ids + "thunar.desktop;");
    quillbox::CapturedOutput output;
    EXPECT_EQ(defaultId(), "thunar.desktop");
    EXPECT_TRUE(output.lines().empty());

    for (const char* program : {"pcmanfm", "nautilus", "thunar", "code"})
        std::filesystem::remove(tree.root() / "bin" / program);
    EXPECT_EQ(defaultId(), "(none)");
    ASSERT_EQ(output.lines().size(), 1u);
    EXPECT_EQ(output.lines()[0],
              "No file manager can start; tried removed.desktop (program removed-file-manager not "
              "found), empty.desktop (no usable Exec), fieldcode.desktop (no usable Exec), "
              "quoting.desktop (no usable Exec), relative.desktop (program bin/pcmanfm not found), "
              "hidden-path.desktop (program only-in-working-directory not found), "
              "tryexec.desktop (TryExec program gone-helper not found), thunar.desktop (program "
              "thunar not found), code.desktop (program code not found), nautilus.desktop "
              "(program nautilus not found), pcmanfm.desktop (program pcmanfm not found).");
}

TEST_F(DefaultFileManagerTest, StartsTheProgramFoundWhenChosen) {
    writeDefaults("home/.config/mimeapps.list", "pcmanfm.desktop");
    const DesktopEntryIndex index(tree.directories(), DesktopEntryLocale());
    const auto fileManager = DefaultFileManager::find(index);
    ASSERT_TRUE(fileManager);
    EXPECT_THAT(fileManager->backgroundCommandLine(),
                ElementsAre((tree.root() / "bin/pcmanfm").string(), "--daemon-mode"));
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
