// Which installed application a running process is: what its window says of
// itself first, then the names the process runs under.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "platform/xdg/ProcessIdentities.h"
#include "xdg/DesktopEntryTestTree.h"
#include "xdg/ProcessTestChild.h"

namespace platform::xdg {
namespace {

using fixtures::DesktopEntryTestTree;
using fixtures::ProcessTestChild;

TEST(ProcessIdentitiesTest, AWindowsApplicationIdThenClassNameTheEntryBeforeTheProcessDoes) {
    DesktopEntryTestTree tree;
    const std::string system = DesktopEntryTestTree::system;
    tree.writeApplication(system + "sleeper.desktop", "Sleeper", "sleep");
    tree.writeApplication(system + "org.example.Chosen.desktop", "Chosen", "chosen");
    tree.writeApplication(system + "org.example.Classy.desktop", "Classy", "classy",
                          "StartupWMClass=ClassyMain\n");
    tree.writeApplication(system + "pcmanfm.desktop", "Files", "pcmanfm");
    const DesktopEntryIndex entries(tree.directories(), DesktopEntryLocale());
    const DesktopEntryIcons icons(tree.directories());
    const ProcessIdentities identities(entries, icons,
                                       DefaultFileManager(*entries.entryWithId("pcmanfm")), {}, {});
    const ProcessTestChild child({"/bin/sleep", "30"});
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (ProcessInfo::read(child.pid()).name != "sleep" &&
           std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    const auto nameOf = [&](const std::optional<WindowIdentity>& window) {
        return identities.identityOf(child.pid(), window).localizedName.value_or("(none)");
    };

    EXPECT_EQ(nameOf({}), "Sleeper");
    EXPECT_EQ(nameOf(WindowIdentity{"classy", "ClassyMain", ""}), "Classy");
    EXPECT_EQ(nameOf(WindowIdentity{"classy", "ClassyMain", "org.example.Chosen"}), "Chosen");
    EXPECT_EQ(nameOf(WindowIdentity{"other", "Other", "org.example.Missing"}), "Sleeper")
        << "an id and a class of nothing installed leave the process's names";

    // Shown only in accessory windows, it is no regular application of its
    // entry, unless it is the file manager playing the Finder.
    const auto accessory = identities.identityOf(child.pid(), {}, true);
    EXPECT_EQ(accessory.activationPolicy, ActivationPolicy::accessory);
    EXPECT_FALSE(accessory.bundleIdentifier);
    EXPECT_FALSE(accessory.bundleURL);
    EXPECT_EQ(accessory.localizedName, "sleep");
    const auto finder =
        identities.identityOf(child.pid(), WindowIdentity{"pcmanfm", "Pcmanfm", ""}, true);
    EXPECT_EQ(finder.bundleIdentifier, DefaultFileManager::finderBundleIdentifier);
    EXPECT_EQ(finder.activationPolicy, ActivationPolicy::regular);
}

}  // namespace
}  // namespace platform::xdg
