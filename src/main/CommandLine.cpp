#include "main/CommandLine.h"

#include <string_view>

#include "main/BuildInfo.h"

namespace tarnwick {

namespace {

CommandLine::Action actionFor(std::string_view option) {
    if (option == "--help" || option == "-h")
        return CommandLine::Action::help;
    if (option == "--version")
        return CommandLine::Action::version;
    if (option == "--simulate")
        return CommandLine::Action::simulate;
    if (option == "--show-panel")
        return CommandLine::Action::showPanel;
    return CommandLine::Action::invalid;
}

}  // namespace

// One option at most: each of them names a whole way of running.
CommandLine parseCommandLine(int argc, const char* const* argv) {
    if (argc <= 1)
        return {};
    if (argc > 2)
        return {CommandLine::Action::invalid, "too many options"};
    const std::string_view option = argv[1];
    const auto action = actionFor(option);
    if (action == CommandLine::Action::invalid) {
        return {action, "unknown option '" + std::string(option) + "'"};
    }
    return {action, {}};
}

std::string usageText() {
    return "Usage: tarnwick [OPTION]\n"
           "Puts an application's windows at the mouse: a key chord (by default\n"
           "Control-Option-Shift) brings up a panel at the pointer listing them.\n"
           "\n"
           "One copy runs in a session: starting it again opens its Settings.\n"
           "\n"
           "Options:\n"
           "  --show-panel  bring up the panel at the pointer (from the running copy,\n"
           "                which this start asks, then exits)\n"
           "  --simulate    run on a simulated desktop with sample applications\n"
           "  --version     print the version and build, then exit\n"
           "  --help        print this help, then exit\n";
}

std::string versionText() {
    return std::string("Tarnwick ") + build::version + " (build " + build::number + ")";
}

}  // namespace tarnwick
