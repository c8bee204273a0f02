#include "platform/sim/SimWorkspace.h"

#include <algorithm>

namespace platform::sim {

SimWorkspace::SimWorkspace(MainLoop& loop) : ObservedWorkspace(loop) {}

std::vector<RunningApplicationRef> SimWorkspace::runningApplications() const {
    return {running_.begin(), running_.end()};
}

RunningApplicationRef SimWorkspace::runningApplicationWithProcessIdentifier(pid_t pid) const {
    for (const auto& app : running_) {
        if (app->processIdentifier() == pid)
            return app;
    }
    return nullptr;
}

std::shared_ptr<SimRunningApplication> SimWorkspace::addRunning(SimRunningApplication::Info info) {
    auto app = std::make_shared<SimRunningApplication>(std::move(info));
    running_.push_back(app);
    return app;
}

std::shared_ptr<SimRunningApplication> SimWorkspace::launch(SimRunningApplication::Info info) {
    auto app = addRunning(std::move(info));
    post(WorkspaceNotification::didLaunchApplication, app);
    return app;
}

void SimWorkspace::terminate(pid_t pid) {
    auto it = std::find_if(running_.begin(), running_.end(),
                           [pid](const auto& app) { return app->processIdentifier() == pid; });
    if (it == running_.end())
        return;
    auto app = *it;
    running_.erase(it);
    app->markTerminated();
    post(WorkspaceNotification::didTerminateApplication, app);
}

void SimWorkspace::setFrontmostApplication(RunningApplicationRef app) {
    setFrontmost(std::move(app));
}

void SimWorkspace::setCurrentApplication(std::shared_ptr<SimRunningApplication> app) {
    if (std::find(running_.begin(), running_.end(), app) == running_.end())
        running_.push_back(app);
    current_ = std::move(app);
}

void SimWorkspace::postNotificationWithoutApplication(WorkspaceNotification name) {
    post(name, nullptr);
}

std::optional<std::filesystem::path> SimWorkspace::URLForApplicationWithBundleIdentifier(
    const std::string& bundleIdentifier) const {
    const auto found = installed_.find(bundleIdentifier);
    if (found == installed_.end())
        return std::nullopt;
    return found->second;
}

void SimWorkspace::setApplicationURL(const std::string& bundleIdentifier,
                                     std::optional<std::filesystem::path> location) {
    if (location) {
        installed_.insert_or_assign(bundleIdentifier, std::move(*location));
    } else {
        installed_.erase(bundleIdentifier);
    }
}

}  // namespace platform::sim
