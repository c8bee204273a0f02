// Chord to panel: the real program on the current display, presses of
// Control+Alt+Shift through the server's test extension (200, or --presses N), each timed from the
// press that completes the chord to the panel's window being mapped, and to
// its first repaint after that; Escape puts it away between presses. Prints
// the median and the 99th percentile of both, and how many times the panel
// was drawn per showing. First, start to the first response: the program
// started afresh (5 times, or --starts N), timed to its first panel being
// managed by the window manager; the chord is answered from then on.
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
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

// The program presents its panel as soon as it has started, by the same
// path as the chord's.
void measureStarts(long starts) {
    if (starts <= 0)
        return;
    e2e::PrivateFolders folders;
    folders.markInstructionsSeen();
    e2e::Desktop desktop;
    desktop.movePointer(640, 400);
    std::vector<double> milliseconds;
    for (long start = 0; start < starts; ++start) {
        const auto started = Clock::now();
        e2e::RunningProgram program(e2e::tarnwickExecutable(), {});
        const auto deadline = started + std::chrono::seconds(20);
        while (!desktop.panelClient(program.pid()) && Clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::microseconds(250));
        const auto shown = Clock::now();
        if (shown < deadline)
            milliseconds.push_back(
                std::chrono::duration<double, std::milli>(shown - started).count());
        program.sendSignal(SIGTERM);
        program.waitForExit(10);
    }
    if (milliseconds.empty()) {
        std::fprintf(stderr, "no start brought the panel up\n");
        return;
    }
    std::printf("start to first panel, %zu starts: median %.1f ms, best %.1f ms\n",
                milliseconds.size(), percentile(milliseconds, 0.5),
                *std::min_element(milliseconds.begin(), milliseconds.end()));
}

}  // namespace

int main(int argc, char** argv) {
    const long presses = bench::option(argc, argv, "presses", 200);
    measureStarts(bench::option(argc, argv, "starts", 5));
    bench::ProgramAtRest tarnwick;
    if (!tarnwick.start())
        return 1;
    auto& desktop = tarnwick.desktop();
    const xcb_window_t panel = tarnwick.panel();
    bench::RepaintWatch repaints(panel);

    std::vector<double> toMapped;
    std::vector<double> toPainted;
    std::vector<double> fullRepaints;
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
        if (painted) {
            toPainted.push_back(since(drawn));
            // Whatever else the showing draws comes within a few frames.
            fullRepaints.push_back(repaints.fullRepaintsAfter(0.1));
        }
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
    std::printf("full repaints per showing: median %.0f, most %.0f\n",
                percentile(fullRepaints, 0.5),
                *std::max_element(fullRepaints.begin(), fullRepaints.end()));
    return 0;
}
