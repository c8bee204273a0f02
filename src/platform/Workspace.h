#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Application.h"
#include "platform/Image.h"
#include "platform/Subscription.h"

namespace platform {

// A running application as the workspace reports it. Shared objects: the
// workspace hands out the same object for a process for as long as it runs.
class RunningApplication {
  public:
    virtual ~RunningApplication() = default;

    virtual pid_t processIdentifier() const = 0;
    virtual std::optional<std::string> bundleIdentifier() const = 0;
    // Where the application's bundle lies (on Linux: its desktop entry).
    virtual std::optional<std::filesystem::path> bundleURL() const = 0;
    virtual std::optional<std::string> localizedName() const = 0;
    virtual std::optional<Image> icon() const = 0;
    virtual bool isTerminated() const = 0;
    virtual ActivationPolicy activationPolicy() const = 0;
    virtual std::string description() const = 0;

    // The platform's object equality: the same process.
    virtual bool isEqual(const RunningApplication& other) const {
        return this == &other || processIdentifier() == other.processIdentifier();
    }
};

using RunningApplicationRef = std::shared_ptr<RunningApplication>;

enum class WorkspaceNotification {
    didLaunchApplication,
    didTerminateApplication,
};

// What a workspace notification carries; application is null when the
// notification came without one.
struct WorkspaceNotificationInfo {
    RunningApplicationRef application;
};

class Workspace {
  public:
    using NotificationHandler = std::function<void(const WorkspaceNotificationInfo&)>;
    using FrontmostHandler = std::function<void(const RunningApplicationRef&)>;

    virtual ~Workspace() = default;

    virtual std::vector<RunningApplicationRef> runningApplications() const = 0;
    virtual RunningApplicationRef frontmostApplication() const = 0;
    // This program's own entry.
    virtual RunningApplicationRef currentApplication() const = 0;
    virtual RunningApplicationRef runningApplicationWithProcessIdentifier(pid_t pid) const = 0;
    // The image that stands for a file or an application bundle; by default
    // the file's own picture.
    virtual Image iconForFile(const std::filesystem::path& path) const { return Image::file(path); }
    // Where the installed application of this bundle identifier lies;
    // nothing when none is installed.
    virtual std::optional<std::filesystem::path> URLForApplicationWithBundleIdentifier(
        const std::string& bundleIdentifier) const {
        (void)bundleIdentifier;
        return std::nullopt;
    }

    // Notifications arrive on the main loop.
    virtual Token addObserverForName(WorkspaceNotification name, NotificationHandler handler) = 0;
    virtual void removeObserver(Token observer, WorkspaceNotification name) = 0;

    // Observes the frontmost application; with initial set, the handler also
    // runs once right away with the present value.
    virtual Subscription observeFrontmostApplication(bool initial, FrontmostHandler handler) = 0;
};

}  // namespace platform
