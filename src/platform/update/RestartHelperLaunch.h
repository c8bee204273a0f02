#pragma once

#include <filesystem>
#include <string>

namespace platform::update {

// Starts the installed release's restart helper, which waits for this
// process to end and then starts the program, and ends this process. On a
// failure the process goes on, and the error's text is given back after a
// line on standard output.
std::string relaunchThroughRestartHelper(const std::filesystem::path& program);

}  // namespace platform::update
