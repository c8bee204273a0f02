#pragma once

#include "platform/Workspace.h"

namespace tarnwick {

// Whether an application may be offered at all: an ordinary application
// (neither an agent nor a background-only one) whose bundle lies directly in
// one of the system's applications folders, or the system file manager at
// its own system location.
bool shouldTrack(const platform::RunningApplication& application);

}  // namespace tarnwick
