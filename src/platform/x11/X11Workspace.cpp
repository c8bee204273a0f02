#include "platform/x11/X11Workspace.h"

#include <unistd.h>

#include <algorithm>

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
    applicationIdAtom_ = input_.connection().atom("_GTK_APPLICATION_ID");
    addRunningAtStart();
    starting_ = false;
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
    accessibility_.setApplicationProcesses(nullptr);
}

void X11Workspace::addRunningAtStart() {
    add(own_);
    // Grouping the windows there are makes their processes' applications.
    accessibility_.setApplicationProcesses(this);
    for (const auto pid : identities_.processesWithEntries())
        applicationOf(pid, XCB_NONE);
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
    if (const auto it = byProcess_.find(pid); it != byProcess_.end())
        return it->second;
    const auto member = members_.find(pid);
    if (member == members_.end())
        return nullptr;
    const auto it = byProcess_.find(member->second);
    return it == byProcess_.end() ? nullptr : it->second;
}

X11Workspace::Application X11Workspace::runningWithBundleIdentifier(
    const std::optional<std::string>& identifier) const {
    if (!identifier)
        return nullptr;
    for (const auto& application : running_) {
        if (application != own_ && application->bundleIdentifier() == identifier &&
            !application->isTerminated())
            return application;
    }
    return nullptr;
}

void X11Workspace::add(const Application& application) {
    running_.push_back(application);
    byProcess_[application->processIdentifier()] = application;
    if (application != own_) {
        application->followTermination(watcher_,
                                       [this](const Application& ended) { terminated(ended); });
    }
}

void X11Workspace::join(pid_t pid, const Application& application) {
    members_[pid] = application->processIdentifier();
    watcher_.watch(pid, [this](pid_t ended) { members_.erase(ended); });
}

bool X11Workspace::remove(const Application& application) {
    if (std::find(running_.begin(), running_.end(), application) == running_.end())
        return false;
    std::erase(running_, application);
    const pid_t pid = application->processIdentifier();
    if (const auto it = byProcess_.find(pid); it != byProcess_.end() && it->second == application)
        byProcess_.erase(it);
    accessories_.erase(pid);
    std::erase_if(members_, [pid](const auto& member) { return member.second == pid; });
    application->markTerminated();
    post(WorkspaceNotification::didTerminateApplication, application);
    return true;
}

void X11Workspace::terminated(const Application& application) {
    // An application replaced while its process ran has been announced over.
    if (!remove(application))
        return;
    // The windows of the processes it stood for go to the next of them.
    accessibility_.regroupWindowsOf(application->processIdentifier());
    updateFrontmost();
    if (playsTheFileManager(application))
        restartFileManagerSoon();
}

void X11Workspace::reconsider(pid_t pid) {
    if (const auto application = find(pid); application && remove(application))
        accessibility_.regroupWindowsOf(pid);
}

X11Workspace::Application X11Workspace::applicationOf(pid_t pid, xcb_window_t window,
                                                      const X11WindowState* state) {
    if (auto known = find(pid))
        return known;
    if (pid <= 0 || !xdg::isProcessAlive(pid))
        return nullptr;
    const bool accessory = showsOnlyAccessoryWindows(pid, state);
    auto identity = identities_.identityOf(
        pid, window == XCB_NONE ? std::nullopt : windowIdentityOf(window), accessory);
    if (auto same = runningWithBundleIdentifier(identity.bundleIdentifier)) {
        join(pid, same);
        return same;
    }
    const bool regular = identity.activationPolicy == ActivationPolicy::regular;
    const auto application = std::make_shared<xdg::XdgRunningApplication>(pid, std::move(identity));
    add(application);
    if (accessory && !regular)
        accessories_.insert(pid);
    if (!starting_)
        post(WorkspaceNotification::didLaunchApplication, application);
    return application;
}

pid_t X11Workspace::applicationProcessOf(xcb_window_t window, const X11WindowState& state) {
    const auto application = applicationOf(state.processPid(), window, &state);
    return application ? application->processIdentifier() : state.processPid();
}

void X11Workspace::windowJoined(xcb_window_t window, pid_t pid) {
    const auto* state = accessibility_.windowMirror().window(window);
    if (accessories_.contains(pid) && state && !isAccessoryWindow(*state))
        reconsider(pid);
    applicationOf(pid, window);
    // The active window may have been announced before its owner was known.
    if (window == activeWindow_.activeWindow())
        updateFrontmost();
}

void X11Workspace::windowLeft(xcb_window_t window, pid_t) {
    if (window == activeWindow_.activeWindow())
        updateFrontmost();
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
    // Focus passing through no window, as when a window closes or a window
    // manager puts one to full screen, brings no application to the front:
    // the one in front stays there until another's window becomes active,
    // or until it ends.
    const auto current = frontmostApplication();
    if (!frontmost && current && !current->isTerminated())
        return;
    if (frontmost != current)
        setFrontmost(std::move(frontmost));
}

}  // namespace platform::x11
