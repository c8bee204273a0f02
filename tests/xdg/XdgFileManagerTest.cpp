#include <gtest/gtest.h>

#include "platform/xdg/XdgFileManager.h"
#include "xdg/DesktopEntryTestTree.h"

namespace platform::xdg {
namespace {

using fixtures::DesktopEntryTestTree;

class X11FileManagerTest : public ::testing::Test {
  protected:
    DesktopEntryTestTree tree;
    XdgFileManager fileManager{tree.directories()};
};

TEST_F(X11FileManagerTest, UserDirectoriesAreMadeOnlyWhenAskedAndOnlyWhereTheyCanBe) {
    const auto user = SearchPathDomain::user;
    const auto config = tree.root() / "home/.config";
    EXPECT_EQ(fileManager.urlForDirectory(SearchPathDirectory::applicationSupport, user, false),
              tree.root() / "home/.local/share");
    EXPECT_EQ(fileManager.urlForDirectory(SearchPathDirectory::library, user, false), config);
    EXPECT_FALSE(std::filesystem::exists(config)) << "made without create";
    EXPECT_FALSE(fileManager.checkResourceIsReachable(config));

    EXPECT_EQ(fileManager.urlForDirectory(SearchPathDirectory::library, user, true), config);
    EXPECT_TRUE(std::filesystem::is_directory(config));
    EXPECT_TRUE(fileManager.checkResourceIsReachable(config));

    std::filesystem::remove(config);
    tree.write("home/.config", "a file where the folder should be");
    EXPECT_FALSE(fileManager.urlForDirectory(SearchPathDirectory::library, user, true));
    EXPECT_FALSE(fileManager.urlForDirectory(SearchPathDirectory::library,
                                             static_cast<SearchPathDomain>(8), false))
        << "only the user's domain";
    EXPECT_FALSE(fileManager.urlForDirectory(static_cast<SearchPathDirectory>(99), user, false));
}

TEST_F(X11FileManagerTest, ApplicationsDirectoriesAreTheSystemsOnly) {
    EXPECT_EQ(fileManager.applicationsDirectories(),
              (std::vector<std::filesystem::path>{tree.root() / "usr/local/share/applications",
                                                  tree.root() / "usr/share/applications"}));

    // A data directory list that names the user's own data folder, as some
    // sessions set it, still leaves the user's applications out.
    auto directories = tree.directories();
    directories.dataDirs.insert(directories.dataDirs.begin(), directories.dataHome);
    directories.dataDirs.push_back(tree.root() / "home/.local/share/");
    const XdgFileManager withHome(directories);
    EXPECT_EQ(withHome.applicationsDirectories(), fileManager.applicationsDirectories());
}

}  // namespace
}  // namespace platform::xdg
