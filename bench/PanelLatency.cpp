// Chord to panel: the real program on the current display, presses of
// Control+Alt+Shift through the server's test extension (200, or --presses N), each timed from the
// press that completes the chord to the panel's window being mapped, and to
// its first repaint after that; Escape puts it away between presses. Prints
// the median and the 99th percentile of both.
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "DesktopDriver.h"
#include "HarnessOptions.h"
#include "ProgramAtRest.h"
#include "RepaintWatch.h"

namespace {

using Clock = std::chrono::steady_clock;

double percentile(std::vector<double> values, double fraction) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(fraction * static_cast<double>(values.size() - 1))];
}

void printFigures(const char* what, const std::vector<double>& milliseconds) {
    std::printf("chord to panel %s, %zu presses: median %.2f ms, p99 %.2f ms\n", what,
                milliseconds.size(), percentile(milliseconds, 0.5), percentile(milliseconds, 0.99));
}

}  // namespace

int main(int argc, char** argv) {
    const long presses = bench::option(argc, argv, "presses", 200);
    bench::ProgramAtRest tarnwick;
    if (!tarnwick.start())
        return 1;
    auto& desktop = tarnwick.desktop();
    const xcb_window_t panel = tarnwick.panel();
    bench::RepaintWatch repaints(panel);

    std::vector<double> toMapped;
    std::vector<double> toPainted;
    for (long press = 0; press < presses; ++press) {
        if (press > 0) {
            desktop.tap(e2e::escapeKey);
            if (!desktop.waitForMapping(panel, false, 2))
                continue;  // was already closed
        }
        if (repaints.available())
            repaints.clear();
        desktop.key(e2e::controlKey, true);
        desktop.key(e2e::altKey, true);
        const auto pressed = Clock::now();
        desktop.key(e2e::shiftKey, true);
        const bool mapped = desktop.waitForMapping(panel, true, 2);
        const auto shown = Clock::now();
        const bool painted = mapped && repaints.available() && repaints.waitForRepaint(2);
        const auto drawn = Clock::now();
        for (auto key : {e2e::shiftKey, e2e::altKey, e2e::controlKey})
            desktop.key(key, false);
        const auto since = [&](Clock::time_point then) {
            return std::chrono::duration<double, std::milli>(then - pressed).count();
        };
        if (mapped)
            toMapped.push_back(since(shown));
        if (painted)
            toPainted.push_back(since(drawn));
    }
    tarnwick.stop();
    if (toMapped.empty()) {
        std::fprintf(stderr, "no press brought the panel up\n");
        return 1;
    }
    printFigures("mapped", toMapped);
    if (toPainted.empty()) {
        std::fprintf(stderr, "no repaint of the panel was seen\n");
        return 1;
    }
    printFigures("mapped and painted", toPainted);
    return 0;
}
