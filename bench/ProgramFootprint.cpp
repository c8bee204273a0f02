// The real program on the current display, measured where nothing may
// grow: how often it wakes up while idle, and its resident memory over many
// showings of the panel (the chord pressed through the server's test
// extension, the panel mapped, Escape, the panel unmapped).
//   ProgramFootprint [--idle-seconds S] [--cycles N]   (10 s and 2,000 by default)
// Run under scripts/virtual-desktop.sh.
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <thread>

#include "DesktopDriver.h"
#include "Footprint.h"
#include "HarnessOptions.h"
#include "ProgramAtRest.h"

namespace {

// One showing and hiding of the panel; false when either didn't happen.
bool showAndHide(e2e::Desktop& desktop, xcb_window_t panel) {
    desktop.pressChord();
    if (!desktop.waitForMapping(panel, true, 5))
        return false;
    desktop.tap(e2e::escapeKey);
    return desktop.waitForMapping(panel, false, 5);
}

void measureIdle(pid_t pid, long seconds) {
    std::this_thread::sleep_for(std::chrono::seconds(2));  // the panel's going settles
    const long before = bench::contextSwitches(pid);
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    std::printf("wake-ups of the idle program in %ld s: %ld\n", seconds,
                bench::contextSwitches(pid) - before);
}

}  // namespace

int main(int argc, char** argv) {
    const long idleSeconds = bench::option(argc, argv, "idle-seconds", 10);
    const long cycles = bench::option(argc, argv, "cycles", 2000);
    bench::ProgramAtRest tarnwick;
    if (!tarnwick.start())
        return 1;
    measureIdle(tarnwick.pid(), idleSeconds);

    for (int warmUp = 0; warmUp < 20; ++warmUp)
        showAndHide(tarnwick.desktop(), tarnwick.panel());
    const long before = bench::residentKiB(tarnwick.pid());
    long failed = 0;
    for (long i = 0; i < cycles; ++i)
        failed += showAndHide(tarnwick.desktop(), tarnwick.panel()) ? 0 : 1;
    bench::printGrowth("show/hide cycles of the panel", cycles, before,
                       bench::residentKiB(tarnwick.pid()));
    if (failed)
        std::printf("cycles in which the panel didn't come or go: %ld\n", failed);
    tarnwick.stop();
    return failed == 0 ? 0 : 1;
}
