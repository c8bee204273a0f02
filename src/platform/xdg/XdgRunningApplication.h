#pragma once

#include <functional>
#include <memory>

#include "platform/Workspace.h"
#include "platform/xdg/DefaultFileManager.h"
#include "platform/xdg/DesktopEntry.h"
#include "platform/xdg/DesktopEntryIcons.h"
#include "platform/xdg/ProcessWatcher.h"

namespace platform::xdg {

// A running process as the workspace reports it. With a desktop entry, the
// entry gives its identity: bundle identifier (the desktop-file id without
// ".desktop"), bundle location (the entry file), name and icon. Without one,
// the process is an unbundled program known only by its executable's name.
class XdgRunningApplication final : public RunningApplication,
                                    public std::enable_shared_from_this<XdgRunningApplication> {
  public:
    // What the application reports of itself.
    struct Identity {
        std::optional<std::string> bundleIdentifier;
        std::optional<std::filesystem::path> bundleURL;
        std::optional<std::string> localizedName;
        std::optional<Image> icon;
        ActivationPolicy activationPolicy = ActivationPolicy::regular;
    };

    // The identity an entry gives: regular when the entry shows in menus,
    // accessory when it is NoDisplay, prohibited when it is no application
    // or is deleted (Hidden).
    static Identity identityOf(const DesktopEntry& entry, const DesktopEntryIcons& icons);
    // The identity of the file manager playing the Finder: the Finder's
    // bundle identifier and location, the file manager's name and icon.
    static Identity finderIdentityOf(const DesktopEntry& fileManager,
                                     const DesktopEntryIcons& icons);
    // The identity of a process without an entry: its executable's name.
    static Identity identityOfProcess(pid_t pid);
    // The identity of a process that shows only accessory windows (a panel,
    // a desktop): its executable's name, no bundle, an accessory.
    static Identity accessoryIdentityOfProcess(pid_t pid);
    // The identity of a process whose entry (if any) the index found: the
    // Finder's when the entry is the file manager's.
    static Identity identityFor(pid_t pid, const DesktopEntry* entry,
                                const DefaultFileManager* fileManager,
                                const DesktopEntryIcons& icons);

    XdgRunningApplication(pid_t pid, Identity identity)
        : pid_(pid), identity_(std::move(identity)) {}

    pid_t processIdentifier() const override { return pid_; }
    std::optional<std::string> bundleIdentifier() const override {
        return identity_.bundleIdentifier;
    }
    std::optional<std::filesystem::path> bundleURL() const override { return identity_.bundleURL; }
    std::optional<std::string> localizedName() const override { return identity_.localizedName; }
    std::optional<Image> icon() const override { return identity_.icon; }
    bool isTerminated() const override { return terminated_; }
    ActivationPolicy activationPolicy() const override { return identity_.activationPolicy; }
    std::string description() const override;

    void markTerminated() { terminated_ = true; }
    // Marks the application terminated when the watcher sees its process
    // end, then calls onTerminated with it. The watcher holds the
    // application weakly: an application let go of is forgotten.
    bool followTermination(
        ProcessWatcher& watcher,
        std::function<void(const std::shared_ptr<XdgRunningApplication>&)> onTerminated = {});

  private:
    pid_t pid_;
    Identity identity_;
    bool terminated_ = false;
};

}  // namespace platform::xdg
