#include "ProgramStarts.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

namespace e2e {

void startAtRest(Desktop& desktop, std::unique_ptr<RunningProgram>& program) {
    program = std::make_unique<RunningProgram>(tarnwickExecutable(), std::vector<std::string>{});
    ASSERT_TRUE(program->waitUntilHandling(SIGTERM, 20)) << program->standardError();
    ASSERT_TRUE(eventually([&] { return desktop.panelClient(program->pid()).has_value(); }));
    desktop.tap(escapeKey);
    ASSERT_TRUE(panelIsGone(desktop, *program));
}

void stopCleanly(RunningProgram& program) {
    program.sendSignal(SIGTERM);
    EXPECT_EQ(program.waitForExit(10), (ExitStatus{true, 0}));
}

bool panelIsGone(Desktop& desktop, const RunningProgram& program) {
    return eventually([&] { return !desktop.panelClient(program.pid()); });
}

}  // namespace e2e
