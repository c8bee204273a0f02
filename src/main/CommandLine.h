#pragma once

#include <string>

namespace tarnwick {

// What the command line asks the program to do.
struct CommandLine {
    enum class Action {
        run,        // on the real desktop
        simulate,   // on the simulated desktop, with sample applications
        showPanel,  // the panel at the pointer, from the running copy if there is one
        help,
        version,
        invalid,
    };
    Action action = Action::run;
    // For an invalid command line: what was wrong.
    std::string error;
};

CommandLine parseCommandLine(int argc, const char* const* argv);

// The usage text, ending in a newline.
std::string usageText();
// "Tarnwick 0.1.0 (build 12)"
std::string versionText();

}  // namespace tarnwick
