#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/Bundle.h"
#include "platform/xdg/DesktopEntry.h"
#include "platform/xdg/DesktopEntryDirectories.h"
#include "platform/xdg/DesktopEntryLocale.h"

namespace platform::xdg {

// Bundles on Linux: an application's bundle is its desktop entry file. The
// information dictionary says in the platform's keys what the entry says:
// CFBundleName, CFBundleIdentifier (the desktop-file id without
// ".desktop"), CFBundleExecutable, LSUIElement for an entry kept out of
// menus (NoDisplay), LSBackgroundOnly for one that is no application or is
// deleted (Hidden).
class XdgBundles final : public Bundles {
  public:
    struct MainBundleInfo {
        std::filesystem::path executable;
        std::string shortVersion;  // CFBundleShortVersionString, "1.4.0"
        std::string version;       // CFBundleVersion, the build number
        std::string copyright;     // NSHumanReadableCopyright
        // Where the installed program's helper executables lie, relative to
        // its folder; in a build tree they lie beside it.
        std::filesystem::path helpersDirectory;
    };

    static constexpr const char* mainBundleIdentifier = "harrowmere.Tarnwick";

    XdgBundles(MainBundleInfo main, DesktopEntryDirectories directories,
               DesktopEntryLocale locale = DesktopEntryLocale::fromEnvironment());

    // The file manager's entry, whose bundle the Finder's location opens.
    void setFileManagerEntry(std::optional<DesktopEntry> entry) { fileManager_ = std::move(entry); }

    std::shared_ptr<Bundle> mainBundle() override;
    // A desktop entry file; the Finder's location when a file manager is
    // set. Null for anything else.
    std::shared_ptr<Bundle> bundleWithPath(const std::filesystem::path& path) override;

    // The information dictionary of an entry, under a bundle identifier.
    static PropertyList::Dictionary infoDictionary(const DesktopEntry& entry,
                                                   const std::string& bundleIdentifier);

  private:
    std::string idOfFile(const std::filesystem::path& path) const;

    std::shared_ptr<Bundle> main_;
    DesktopEntryDirectories directories_;
    DesktopEntryLocale locale_;
    std::optional<DesktopEntry> fileManager_;
};

}  // namespace platform::xdg
