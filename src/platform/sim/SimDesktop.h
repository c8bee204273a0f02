#pragma once

#include "platform/Platform.h"
#include "platform/sim/SimMainLoop.h"
#include "platform/sim/SimWorkspace.h"

namespace platform::sim {

// The whole simulated desktop: one object a test builds, scripts and
// installs as the platform.
class SimDesktop {
public:
    SimDesktop();
    ~SimDesktop();
    SimDesktop(const SimDesktop&) = delete;
    SimDesktop& operator=(const SimDesktop&) = delete;

    SimMainLoop& loop() { return loop_; }
    SimWorkspace& workspace() { return workspace_; }

    // The services of this desktop, for platform::install or ScopedInstall.
    Services services();

private:
    SimMainLoop loop_;
    SimWorkspace workspace_;
};

}  // namespace platform::sim
