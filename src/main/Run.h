#pragma once

#include "main/CommandLine.h"

namespace tarnwick {

// Runs the program on the desktop the command line chose until it quits or
// is asked to stop by SIGTERM or SIGINT. The exit status.
int runOnDesktop(const CommandLine& commandLine, int& argc, char** argv);

}  // namespace tarnwick
