// Chord to panel: the real program on the current display, 200 presses of
// Control+Alt+Shift through the server's test extension, each timed from the
// press that completes the chord to the panel's window being mapped; Escape
// puts it away between presses. Prints the median and the 99th percentile.
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "DesktopDriver.h"
#include "RunningProgram.h"

namespace {

double percentile(std::vector<double> values, double fraction) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(fraction * static_cast<double>(values.size() - 1))];
}

}  // namespace

int main() {
    using Clock = std::chrono::steady_clock;
    const e2e::PrivateFolders folders;
    e2e::Desktop desktop;
    e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
    if (!tarnwick.waitUntilHandling(SIGTERM, 20)) {
        std::fprintf(stderr, "tarnwick did not start\n");
        return 1;
    }
    desktop.movePointer(640, 400);
    desktop.pressChord();
    std::optional<xcb_window_t> panel;
    if (!e2e::eventually(
            [&] { return (panel = desktop.panelClient(tarnwick.pid())).has_value(); })) {
        std::fprintf(stderr, "the panel never showed\n");
        return 1;
    }
    desktop.watchMapping(*panel);

    std::vector<double> milliseconds;
    for (int press = 0; press < 200; ++press) {
        desktop.key(e2e::escapeKey, true);
        desktop.key(e2e::escapeKey, false);
        if (!desktop.waitForMapping(*panel, false, 2))
            continue;  // was already closed
        desktop.key(e2e::controlKey, true);
        desktop.key(e2e::altKey, true);
        const auto pressed = Clock::now();
        desktop.key(e2e::shiftKey, true);
        const bool mapped = desktop.waitForMapping(*panel, true, 2);
        const auto shown = Clock::now();
        for (auto key : {e2e::shiftKey, e2e::altKey, e2e::controlKey})
            desktop.key(key, false);
        if (mapped) {
            milliseconds.push_back(
                std::chrono::duration<double, std::milli>(shown - pressed).count());
        }
    }
    tarnwick.sendSignal(SIGTERM);
    tarnwick.waitForExit(10);
    if (milliseconds.empty()) {
        std::fprintf(stderr, "no press brought the panel up\n");
        return 1;
    }
    std::printf("chord to panel mapped, %zu presses: median %.2f ms, p99 %.2f ms\n",
                milliseconds.size(), percentile(milliseconds, 0.5), percentile(milliseconds, 0.99));
    return 0;
}
