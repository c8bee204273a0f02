#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/xdg/DefaultFileManager.h"
#include "platform/xdg/XdgRunningApplication.h"
#include "xdg/DesktopEntryTestTree.h"

namespace platform::xdg {
namespace {

using fixtures::DesktopEntryTestTree;

class X11RunningApplicationTest : public ::testing::Test {
  protected:
    DesktopEntry entry(std::string_view extra = {}) {
        const auto file = tree.writeApplication(
            std::string(DesktopEntryTestTree::system) + "org.example.Notes.desktop", "Notes",
            "notes %U", extra);
        return *DesktopEntry::load(file, "org.example.Notes.desktop");
    }

    DesktopEntryTestTree tree;
    DesktopEntryIcons icons{tree.directories()};
};

TEST_F(X11RunningApplicationTest, AnEntryGivesTheIdentityAndItsVisibilityThePolicy) {
    const auto icon = tree.write("usr/share/icons/hicolor/48x48/apps/notes.png", "png");
    const auto notes = entry("Icon=notes\n");
    const XdgRunningApplication application(1234, XdgRunningApplication::identityOf(notes, icons));
    EXPECT_EQ(application.bundleIdentifier(), "org.example.Notes");
    EXPECT_EQ(application.bundleURL(), notes.path);
    EXPECT_EQ(application.localizedName(), "Notes");
    EXPECT_EQ(application.icon(), Image::file(icon));
    EXPECT_EQ(application.activationPolicy(), ActivationPolicy::regular);
    EXPECT_EQ(application.description(), "<XdgRunningApplication pid=1234 id=org.example.Notes>");

    const auto identity = [&](std::string_view extra) {
        return XdgRunningApplication::identityOf(entry(extra), icons);
    };
    EXPECT_EQ(identity("NoDisplay=true\n").activationPolicy, ActivationPolicy::accessory);
    EXPECT_EQ(identity("Hidden=true\n").activationPolicy, ActivationPolicy::prohibited);
    EXPECT_FALSE(identity("Icon=missing\n").icon);
}

TEST_F(X11RunningApplicationTest, OnlyTheFileManagersEntryMakesTheFinder) {
    const auto notes = entry("NoDisplay=true\n");
    const auto finder = XdgRunningApplication::finderIdentityOf(notes, icons);
    EXPECT_EQ(finder.bundleIdentifier, "com.apple.finder");
    EXPECT_EQ(finder.bundleURL, std::filesystem::path("/System/Library/CoreServices/Finder.app"));
    EXPECT_EQ(finder.localizedName, "Notes");
    EXPECT_EQ(finder.activationPolicy, ActivationPolicy::regular);

    auto other = notes;
    other.id = "other.desktop";
    const DefaultFileManager fileManager(notes);
    const auto identity = [&](const DesktopEntry* found, const DefaultFileManager* manager) {
        return XdgRunningApplication::identityFor(::getpid(), found, manager, icons)
            .bundleIdentifier.value_or("(none)");
    };
    EXPECT_EQ(identity(&notes, &fileManager), "com.apple.finder");
    EXPECT_EQ(identity(&other, &fileManager), "other");
    EXPECT_EQ(identity(&notes, nullptr), "org.example.Notes");
    EXPECT_EQ(identity(nullptr, &fileManager), "(none)");
}

TEST(DesktopEntryIconsTest, FindsIconsInThemesThenPixmaps) {
    DesktopEntryTestTree tree;
    const auto large = tree.write("usr/share/icons/hicolor/256x256/apps/tool.png", "png");
    const auto medium = tree.write("usr/share/icons/hicolor/48x48/apps/tool.svg", "svg");
    const auto mine = tree.write("home/.local/share/icons/hicolor/64x64/apps/mine.png", "png");
    const auto legacy = tree.write("usr/share/icons/Adwaita/24x24/legacy/folder-ish.png", "png");
    const auto pixmap = tree.write("usr/share/pixmaps/old.xpm", "xpm");
    const DesktopEntryIcons icons(tree.directories());
    EXPECT_EQ(icons.find("tool"), medium) << "the list size first";
    EXPECT_EQ(icons.find("tool.png"), medium) << "a given extension is ignored";
    EXPECT_EQ(icons.find("mine"), mine);
    EXPECT_EQ(icons.find("folder-ish"), legacy);
    EXPECT_EQ(icons.find("old"), pixmap);
    EXPECT_EQ(icons.find(large.string()), large) << "an absolute path as it stands";
    EXPECT_FALSE(icons.find((tree.root() / "nothing.png").string()));
    EXPECT_FALSE(icons.find("missing"));
    EXPECT_FALSE(icons.find("../pixmaps/old"));
    EXPECT_FALSE(icons.find(""));
}

}  // namespace
}  // namespace platform::xdg
