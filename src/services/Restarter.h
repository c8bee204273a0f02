#pragma once

#include <string>

namespace tarnwick::Restarter {

// The helper executable that starts the program again once this process
// has ended. Its command line is the contract with it:
//   AppRestartHelper --watch-pid <this process's id> --app <bundle path>
inline constexpr const char* helperName = "AppRestartHelper";
inline constexpr const char* failurePrefix = "Failed to launch restart helper: ";

// Starts the helper from the program's bundle and terminates the program.
// When the helper can't be started, says so in one line and carries on, so
// that the user can try again.
void relaunch();

}  // namespace tarnwick::Restarter
