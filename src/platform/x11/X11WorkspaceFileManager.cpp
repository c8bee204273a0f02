// The file manager's part in the workspace: it plays the Finder.
#include <algorithm>

#include "platform/x11/X11Workspace.h"
#include "support/StandardOutput.h"

namespace platform::x11 {

namespace {

// A file manager that ran this long ended for a reason of its own, not
// because it can't run here: it is started again at once.
constexpr double longRun = 60;
constexpr double firstPause = 0.5;
constexpr double longestPause = 60;

}  // namespace

void X11Workspace::startFileManagerIfNeeded() {
    const auto* fileManager = identities_.fileManager();
    if (!fileManager)
        return;
    if (std::any_of(running_.begin(), running_.end(),
                    [this](const auto& app) { return playsTheFileManager(app); }))
        return;
    const auto started = launcher_.spawn(fileManager->backgroundCommandLine(), {{}, true});
    if (!started) {
        quillbox::printLine("Could not start the file manager " + fileManager->entry().id + ": " +
                            started.error);
        return;
    }
    startedFileManagerAt_ = loop().now();
    const auto application =
        std::make_shared<xdg::XdgRunningApplication>(started.pid, *identities_.finderIdentity());
    add(application);
    // At start, before anyone could listen, there is no launch to announce.
    if (fileManagerRestartPause_ > 0)
        post(WorkspaceNotification::didLaunchApplication, application);
}

bool X11Workspace::playsTheFileManager(const Application& application) const {
    const auto finder = identities_.finderIdentity();
    return finder && application->bundleIdentifier() == finder->bundleIdentifier;
}

void X11Workspace::restartFileManagerSoon() {
    const bool endedSoon = loop().now() - startedFileManagerAt_ < longRun;
    fileManagerRestartPause_ =
        endedSoon ? std::clamp(fileManagerRestartPause_ * 2, firstPause, longestPause) : firstPause;
    if (fileManagerRestart_)
        loop().cancel(fileManagerRestart_);
    fileManagerRestart_ = loop().postAfter(fileManagerRestartPause_, lifetime_.guard([this] {
        fileManagerRestart_ = {};
        startFileManagerIfNeeded();
    }));
}

}  // namespace platform::x11
