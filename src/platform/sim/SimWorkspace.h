#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/MainLoop.h"
#include "platform/ObservedWorkspace.h"
#include "platform/sim/SimRunningApplication.h"

namespace platform::sim {

// The simulated workspace: running applications in launch order, the
// frontmost one, and the launch and termination notifications, delivered on
// the main loop as the platform does.
class SimWorkspace final : public ObservedWorkspace {
  public:
    explicit SimWorkspace(MainLoop& loop);

    std::vector<RunningApplicationRef> runningApplications() const override;
    RunningApplicationRef currentApplication() const override { return current_; }
    RunningApplicationRef runningApplicationWithProcessIdentifier(pid_t pid) const override;

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

  private:
    std::vector<std::shared_ptr<SimRunningApplication>> running_;
    std::shared_ptr<SimRunningApplication> current_;
    std::map<std::string, std::filesystem::path> installed_;
};

}  // namespace platform::sim
