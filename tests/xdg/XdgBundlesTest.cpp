#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/xdg/DefaultFileManager.h"
#include "platform/xdg/XdgBundles.h"
#include "xdg/DesktopEntryTestTree.h"

namespace platform::xdg {
namespace {

using fixtures::DesktopEntryTestTree;

class XdgBundlesTest : public ::testing::Test {
  protected:
    XdgBundlesTest()
        : bundles({"/opt/tarnwick/bin/tarnwick", "1.4.0", "812", "Copyright © 2026 Harrowmere.",
                   "../libexec/tarnwick"},
                  tree.directories(), DesktopEntryLocale("de_DE.UTF-8")) {}

    PropertyList infoValue(const std::shared_ptr<Bundle>& bundle, const std::string& key) {
        const auto* information = bundle->infoDictionary();
        const auto it = information->find(key);
        return it == information->end() ? PropertyList("(missing)") : it->second;
    }

    DesktopEntryTestTree tree;
    XdgBundles bundles;
};

// Installed, the helper lies in its own folder; in a build tree, beside the
// program, which wins.
TEST_F(XdgBundlesTest, TheProgramsHelperLiesBesideItElseInTheInstalledFolder) {
    EXPECT_EQ(bundles.mainBundle()->pathForAuxiliaryExecutable("AppRestartHelper"),
              "/opt/tarnwick/libexec/tarnwick/AppRestartHelper");
    EXPECT_EQ(infoValue(bundles.mainBundle(), "NSHumanReadableCopyright"),
              PropertyList("Copyright © 2026 Harrowmere."));

    const auto buildTree = tree.root() / "build tree";
    std::filesystem::create_directories(buildTree);
    std::ofstream(buildTree / "AppRestartHelper") << "#!/bin/sh\n";
    XdgBundles built({buildTree / "tarnwick", "1.4.0", "812", "", "../libexec/tarnwick"},
                     tree.directories());
    EXPECT_EQ(built.mainBundle()->pathForAuxiliaryExecutable("AppRestartHelper"),
              buildTree / "AppRestartHelper");
}

TEST_F(XdgBundlesTest, AnEntryGivesItsIdentityAndInformation) {
    const std::string system = DesktopEntryTestTree::system;
    const auto file = tree.writeApplication(system + "gnome/org.example.Notes.desktop", "Notes",
                                            "env A=1 /usr/bin/notes-app %U", "Name[de]=Notizen\n");
    const auto bundle = bundles.bundleWithPath(file);
    ASSERT_TRUE(bundle);
    EXPECT_EQ(bundle->bundleIdentifier(), "gnome-org.example.Notes");
    EXPECT_EQ(bundle->bundlePath(), file);
    EXPECT_EQ(infoValue(bundle, "CFBundleName"), PropertyList("Notizen"));
    EXPECT_EQ(infoValue(bundle, "CFBundleIdentifier"), PropertyList("gnome-org.example.Notes"));
    EXPECT_EQ(infoValue(bundle, "CFBundleExecutable"), PropertyList("notes-app"));
    EXPECT_EQ(infoValue(bundle, "LSUIElement"), PropertyList(false));
    EXPECT_EQ(infoValue(bundle, "LSBackgroundOnly"), PropertyList(false));

    // NoDisplay makes an agent; hidden entries and non-applications run in the background.
    const auto agent = bundles.bundleWithPath(
        tree.writeApplication(system + "agent.desktop", "Agent", "agent", "NoDisplay=true\n"));
    EXPECT_EQ(infoValue(agent, "LSUIElement"), PropertyList(true));
    EXPECT_EQ(infoValue(agent, "LSBackgroundOnly"), PropertyList(false));
    const auto deleted = bundles.bundleWithPath(
        tree.writeApplication(system + "deleted.desktop", "Gone", "gone", "Hidden=true\n"));
    EXPECT_EQ(infoValue(deleted, "LSBackgroundOnly"), PropertyList(true));
    const auto link = bundles.bundleWithPath(
        tree.write(system + "site.desktop", "[Desktop Entry]\nType=Link\nName=Site\nURL=x\n"));
    EXPECT_EQ(infoValue(link, "LSBackgroundOnly"), PropertyList(true));
    EXPECT_EQ(infoValue(link, "CFBundleExecutable"), PropertyList("(missing)"));

    // Outside the applications directories an entry is named after its file.
    const auto elsewhere =
        bundles.bundleWithPath(tree.writeApplication("Downloads/tool.desktop", "Tool", "tool"));
    ASSERT_TRUE(elsewhere);
    EXPECT_EQ(elsewhere->bundleIdentifier(), "tool");
}

TEST_F(XdgBundlesTest, TheFindersLocationOpensTheFileManagerAndNothingElseMakesABundle) {
    EXPECT_FALSE(bundles.bundleWithPath(tree.root() / "missing.desktop"));
    EXPECT_FALSE(bundles.bundleWithPath(tree.root()));
    EXPECT_FALSE(bundles.bundleWithPath(tree.write("damaged.desktop", "[Desktop Entry]\nType=")));
    EXPECT_FALSE(bundles.bundleWithPath("/Applications/Safari.app"));
    EXPECT_FALSE(bundles.bundleWithPath(DefaultFileManager::finderBundlePath()))
        << "no Finder without a file manager";

    const auto file =
        tree.writeApplication(std::string(DesktopEntryTestTree::system) + "pcmanfm.desktop",
                              "File Manager", "pcmanfm %U");
    bundles.setFileManagerEntry(DesktopEntry::load(file, "pcmanfm.desktop"));
    const auto finder = bundles.bundleWithPath(DefaultFileManager::finderBundlePath());
    ASSERT_TRUE(finder);
    EXPECT_EQ(finder->bundleIdentifier(), "com.apple.finder");
    EXPECT_EQ(finder->bundlePath(), DefaultFileManager::finderBundlePath());
    EXPECT_EQ(infoValue(finder, "CFBundleName"), PropertyList("File Manager"));
    EXPECT_EQ(infoValue(finder, "LSUIElement"), PropertyList(false));
}

}  // namespace
}  // namespace platform::xdg
