#pragma once

// The real program on the current display, started as after its first run
// with the pointer at (640, 400): it brings the panel up there at once, and
// the harnesses measure it from the moment Escape has taken that panel away.
#include <csignal>
#include <cstdio>
#include <optional>

#include "DesktopDriver.h"
#include "RunningProgram.h"

namespace bench {

class ProgramAtRest {
  public:
    ProgramAtRest() { folders_.markInstructionsSeen(); }

    // Starts the program and puts its launch panel away; false, with the
    // reason on standard error, when it didn't get that far.
    bool start() {
        desktop_.movePointer(640, 400);
        program_.emplace(e2e::tarnwickExecutable(), std::vector<std::string>{});
        if (!program_->waitUntilHandling(SIGTERM, 20))
            return fail("tarnwick did not start");
        if (!e2e::eventually([&] { return (panel_ = desktop_.panelClient(pid())).has_value(); }))
            return fail("the panel never showed");
        desktop_.watchMapping(*panel_);
        desktop_.tap(e2e::escapeKey);
        if (!desktop_.waitForMapping(*panel_, false, 5))
            return fail("Escape didn't take the panel away");
        return true;
    }

    void stop() {
        program_->sendSignal(SIGTERM);
        program_->waitForExit(10);
    }

    e2e::Desktop& desktop() { return desktop_; }
    pid_t pid() const { return program_->pid(); }
    // The panel's client window, watched for mapping.
    xcb_window_t panel() const { return *panel_; }

  private:
    bool fail(const char* reason) const {
        std::fprintf(stderr, "%s\n%s", reason, program_->standardError().c_str());
        return false;
    }

    e2e::PrivateFolders folders_;
    e2e::Desktop desktop_;
    std::optional<e2e::RunningProgram> program_;
    std::optional<xcb_window_t> panel_;
};

}  // namespace bench
