#pragma once

// Starting and stopping the real program the way the list tests need it.
#include <memory>

#include "DesktopDriver.h"
#include "RunningProgram.h"

namespace e2e {

// Starts the program as after its first run and takes away the panel that
// such a start brings up at the pointer: the test begins from a program at
// rest.
void startAtRest(Desktop& desktop, std::unique_ptr<RunningProgram>& program);
// Stops it as a session does and expects a clean exit.
void stopCleanly(RunningProgram& program);
// Whether the program's panel went away within the usual wait.
bool panelIsGone(Desktop& desktop, const RunningProgram& program);

}  // namespace e2e
