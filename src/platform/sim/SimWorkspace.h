#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/MainLoop.h"
#include "platform/Workspace.h"
#include "platform/WorkspaceObservers.h"
#include "platform/sim/SimRunningApplication.h"

namespace platform::sim {

// The simulated workspace: running applications in launch order, the
// frontmost one, and the launch and termination notifications, delivered on
// the main loop as the platform does.
class SimWorkspace final : public Workspace {
  public:
    explicit SimWorkspace(MainLoop& loop);

    std::vector<RunningApplicationRef> runningApplications() const override;
    RunningApplicationRef frontmostApplication() const override { return frontmost_; }
    RunningApplicationRef currentApplication() const override { return current_; }
    RunningApplicationRef runningApplicationWithProcessIdentifier(pid_t pid) const override;

    Token addObserverForName(WorkspaceNotification name, NotificationHandler handler) override;
    void removeObserver(Token observer, WorkspaceNotification name) override;
    Subscription observeFrontmostApplication(bool initial, FrontmostHandler handler) override;
    std::optional<std::filesystem::path> URLForApplicationWithBundleIdentifier(
        const std::string& bundleIdentifier) const override;

    // Scripting. launch() and terminate() post their notification.
    std::shared_ptr<SimRunningApplication> launch(SimRunningApplication::Info info);
    // Adds an application that was running before the program started: no
    // notification.
    std::shared_ptr<SimRunningApplication> addRunning(SimRunningApplication::Info info);
    void terminate(pid_t pid);
    void setFrontmostApplication(RunningApplicationRef app);
    // This program's own entry; it is one of the running applications.
    void setCurrentApplication(std::shared_ptr<SimRunningApplication> app);
    std::shared_ptr<SimRunningApplication> ownEntry() const { return current_; }
    // Installs an application at a location, or takes it away with none.
    void setApplicationURL(const std::string& bundleIdentifier,
                           std::optional<std::filesystem::path> location);
    // Posts a notification whose information lacks the application.
    void postNotificationWithoutApplication(WorkspaceNotification name);

    std::size_t observerCount(WorkspaceNotification name) const;

  private:
    void post(WorkspaceNotification name, RunningApplicationRef app);

    MainLoop& loop_;
    std::uint64_t lastFrontmostId_ = 0;
    std::vector<std::shared_ptr<SimRunningApplication>> running_;
    RunningApplicationRef frontmost_;
    std::shared_ptr<SimRunningApplication> current_;
    WorkspaceObservers observers_;
    std::map<std::uint64_t, FrontmostHandler> frontmostObservers_;
    std::map<std::string, std::filesystem::path> installed_;
};

}  // namespace platform::sim
