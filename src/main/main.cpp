#include <cstdio>

#include "main/CommandLine.h"
#include "main/Run.h"
#include "main/StandardStreams.h"

int main(int argc, char** argv) {
    tarnwick::prepareStandardStreams();
    using tarnwick::CommandLine;
    const auto commandLine = tarnwick::parseCommandLine(argc, argv);
    switch (commandLine.action) {
        case CommandLine::Action::help:
            std::fputs(tarnwick::usageText().c_str(), stdout);
            return 0;
        case CommandLine::Action::version:
            std::printf("%s\n", tarnwick::versionText().c_str());
            return 0;
        case CommandLine::Action::invalid:
            std::fprintf(stderr, "tarnwick: %s\n%s", commandLine.error.c_str(),
                         tarnwick::usageText().c_str());
            return 2;
        case CommandLine::Action::run:
        case CommandLine::Action::simulate:
        case CommandLine::Action::showPanel:
            break;
    }
    return tarnwick::runOnDesktop(commandLine, argc, argv);
}
