#include "platform/x11/X11Workspace.h"

#include <unistd.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <set>

#include "platform/xdg/ProcessInfo.h"

namespace platform::x11 {

X11Workspace::X11Workspace(Parts parts)
    : ObservedWorkspace(parts.loop),
      accessibility_(parts.accessibility),
      input_(parts.input),
      activeWindow_(parts.activeWindow),
      launcher_(parts.launcher),
      identities_(parts.identities),
      watcher_(parts.loop) {
    own_ = std::make_shared<xdg::XdgRunningApplication>(::getpid(), identities_.ownIdentity());
    addRunningAtStart();
    startFileManagerIfNeeded();
    windowListener_ = accessibility_.addWindowListener(*this);
    // The tracker, made on the source before, has read the new active window
    // by the time this handler hears the change: handlers are called in the
    // order they were added.
    inputHandler_ = input_.addEventHandler([this](const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
            return;
        const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (notify.window == input_.root() &&
            notify.atom == input_.connection().ewmh()._NET_ACTIVE_WINDOW) {
            updateFrontmost();
        }
    });
    updateFrontmost();
}

X11Workspace::~X11Workspace() {
    if (fileManagerRestart_)
        loop().cancel(fileManagerRestart_);
    input_.removeEventHandler(inputHandler_);
    accessibility_.removeWindowListener(windowListener_);
}

void X11Workspace::addRunningAtStart() {
    std::set<pid_t> processes;
    for (const auto window : accessibility_.windowMirror().clientList()) {
        if (const auto* state = accessibility_.windowMirror().window(window);
            state && state->pid > 0)
            processes.insert(state->pid);
    }
    for (const auto pid : identities_.processesWithEntries())
        processes.insert(pid);
    processes.erase(own_->processIdentifier());

    add(own_);
    for (const auto pid : processes) {
        if (xdg::isProcessAlive(pid)) {
            add(std::make_shared<xdg::XdgRunningApplication>(
                pid, identities_.identityOf(pid, windowClassOf(pid))));
        }
    }
}

std::vector<RunningApplicationRef> X11Workspace::runningApplications() const {
    return {running_.begin(), running_.end()};
}

RunningApplicationRef X11Workspace::runningApplicationWithProcessIdentifier(pid_t pid) const {
    return find(pid);
}

Image X11Workspace::iconForFile(const std::filesystem::path& path) const {
    return identities_.applicationIcon(path).value_or(Workspace::iconForFile(path));
}

std::optional<std::filesystem::path> X11Workspace::URLForApplicationWithBundleIdentifier(
    const std::string& bundleIdentifier) const {
    return identities_.applicationLocation(bundleIdentifier);
}

X11Workspace::Application X11Workspace::find(pid_t pid) const {
    const auto it = byProcess_.find(pid);
    return it == byProcess_.end() ? nullptr : it->second;
}

void X11Workspace::add(const Application& application) {
    running_.push_back(application);
    byProcess_[application->processIdentifier()] = application;
    if (application != own_) {
        application->followTermination(watcher_,
                                       [this](const Application& ended) { terminated(ended); });
    }
}

void X11Workspace::terminated(const Application& application) {
    std::erase(running_, application);
    if (const auto it = byProcess_.find(application->processIdentifier());
        it != byProcess_.end() && it->second == application) {
        byProcess_.erase(it);
    }
    post(WorkspaceNotification::didTerminateApplication, application);
    updateFrontmost();
    if (playsTheFileManager(application))
        restartFileManagerSoon();
}

X11Workspace::Application X11Workspace::applicationOf(pid_t pid, xcb_window_t window) {
    if (auto known = find(pid))
        return known;
    if (pid <= 0 || !xdg::isProcessAlive(pid))
        return nullptr;
    const auto application = std::make_shared<xdg::XdgRunningApplication>(
        pid, identities_.identityOf(pid, windowClassOf(window)));
    add(application);
    post(WorkspaceNotification::didLaunchApplication, application);
    return application;
}

void X11Workspace::windowJoined(xcb_window_t window, pid_t pid) {
    applicationOf(pid, window);
    // The active window may have been announced before its owner was known.
    if (window == activeWindow_.activeWindow())
        updateFrontmost();
}

void X11Workspace::windowLeft(xcb_window_t window, pid_t) {
    if (window == activeWindow_.activeWindow())
        updateFrontmost();
}

std::optional<xdg::WindowClass> X11Workspace::windowClassOf(pid_t pid) {
    const auto windows = accessibility_.windowMirror().windowsOf(pid);
    if (windows.empty())
        return std::nullopt;
    return windowClassOf(windows.front());
}

std::optional<xdg::WindowClass> X11Workspace::windowClassOf(xcb_window_t window) {
    xcb_connection_t* connection = input_.xcb();
    xcb_icccm_get_wm_class_reply_t reply{};
    // A window gone in the meantime answers with an error: no class.
    const bool found = xcb_icccm_get_wm_class_reply(
        connection, xcb_icccm_get_wm_class(connection, window), &reply, nullptr);
    // Waiting for the reply may have taken events in that the descriptor
    // won't tell of.
    input_.dispatchSoon();
    if (!found)
        return std::nullopt;
    xdg::WindowClass windowClass{reply.instance_name ? reply.instance_name : "",
                                 reply.class_name ? reply.class_name : ""};
    xcb_icccm_get_wm_class_reply_wipe(&reply);
    return windowClass;
}

void X11Workspace::updateFrontmost() {
    const auto window = activeWindow_.activeWindow();
    pid_t pid = 0;
    if (window != XCB_NONE) {
        const auto* state = accessibility_.windowMirror().window(window);
        pid = state && state->pid > 0 ? state->pid : activeWindow_.activeProcess().value_or(0);
    }
    // The active window's owner becomes known here if the window mirror,
    // on its own connection, hasn't told of the window yet: the frontmost
    // application then follows the order of the events on this connection,
    // where the key presses that read it come too.
    RunningApplicationRef frontmost = pid > 0 ? applicationOf(pid, window) : nullptr;
    if (frontmost != frontmostApplication())
        setFrontmost(std::move(frontmost));
}

}  // namespace platform::x11
