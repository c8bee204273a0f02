// The real program with many windows of the application it lists: the
// harness is an X client of its own that makes N windows (10, 100 and
// 1,000, or --counts A,B,...) claimed for the file manager's process, first
// one at a time, then all in one burst. For each N it prints chord to
// panel painted (median and p99 of --presses presses) and the most full
// repaints one showing made, the program's CPU and the times its main
// thread was woken per new window while the panel is hidden and while it
// is shown, the time to answer Escape in the middle of the burst, the CPU
// the burst cost, and the resident memory before, at its peak and after
// the windows are gone. Beside the program runs a toolkit window that does
// nothing; its CPU per new window is printed too, as the floor under the
// program's own. The chord is timed once the window manager, as well as
// the program, is done with the windows made before.
// First, the program's CPU per pointer move while the panel fades and
// while it is closed (--moves of each).
#include <sys/stat.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "DesktopDriver.h"
#include "Footprint.h"
#include "HarnessOptions.h"
#include "RepaintWatch.h"
#include "RunningProgram.h"
#include "platform/x11/X11WindowFetch.h"

namespace {

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

double percentile(std::vector<double> values, double fraction) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(fraction * static_cast<double>(values.size() - 1))];
}

// The CPU time the process's main thread has had, in milliseconds.
double cpuMilliseconds(pid_t pid) {
    std::ifstream in("/proc/" + std::to_string(pid) + "/schedstat");
    double nanoseconds = 0;
    in >> nanoseconds;
    return nanoseconds / 1e6;
}

// Waits until each of the processes has had no CPU for a while: they have
// dealt with everything sent their way.
void waitUntilQuiet(const std::vector<pid_t>& pids) {
    const auto deadline = Clock::now() + std::chrono::seconds(120);
    const auto cpuOfEach = [&] {
        std::vector<double> each;
        for (const pid_t pid : pids)
            each.push_back(cpuMilliseconds(pid));
        return each;
    };
    std::vector<double> last = cpuOfEach();
    int quietRounds = 0;
    while (quietRounds < 6 && Clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        const std::vector<double> now = cpuOfEach();
        bool quiet = true;
        for (std::size_t i = 0; i < now.size(); ++i)
            quiet = quiet && now[i] - last[i] < 0.05;
        quietRounds = quiet ? quietRounds + 1 : 0;
        last = now;
    }
}

void waitUntilQuiet(pid_t pid) {
    waitUntilQuiet(std::vector<pid_t>{pid});
}

// The program's CPU for a window of a burst by which it is surely busy
// with the burst, but not done with it.
constexpr double busyCpuPerWindow = 0.05;

// The windows of the test, made on a connection of the harness's own and
// claimed for another process, as that process's own windows are.
class WindowMaker {
  public:
    explicit WindowMaker(pid_t owner) : connection_(xcb_connect(nullptr, nullptr)), owner_(owner) {
        screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
        netWmPid_ = atom("_NET_WM_PID");
        netWmName_ = atom("_NET_WM_NAME");
        utf8_ = atom("UTF8_STRING");
    }
    ~WindowMaker() { xcb_disconnect(connection_); }

    // Sent, not waited for: a burst is many of these and one flush.
    void make(const std::string& title) {
        const xcb_window_t window = xcb_generate_id(connection_);
        const std::uint32_t values[] = {screen_->white_pixel};
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen_->root, 0, 0, 200, 100,
                          0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual, XCB_CW_BACK_PIXEL,
                          values);
        const auto pid = static_cast<std::uint32_t>(owner_);
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, netWmPid_,
                            XCB_ATOM_CARDINAL, 32, 1, &pid);
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, netWmName_, utf8_, 8,
                            static_cast<std::uint32_t>(title.size()), title.data());
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME,
                            XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(title.size()),
                            title.data());
        xcb_map_window(connection_, window);
        windows_.push_back(window);
    }
    void flush() { xcb_flush(connection_); }
    // The process of the window manager, which made the window by which it
    // announces itself; nothing when the server doesn't say.
    std::optional<pid_t> windowManagerProcess() {
        auto* check = xcb_get_property_reply(
            connection_,
            xcb_get_property(connection_, 0, screen_->root, atom("_NET_SUPPORTING_WM_CHECK"),
                             XCB_ATOM_WINDOW, 0, 1),
            nullptr);
        std::optional<pid_t> found;
        if (check && xcb_get_property_value_length(check) == 4) {
            const auto window = *static_cast<const xcb_window_t*>(xcb_get_property_value(check));
            auto* ids = xcb_res_query_client_ids_reply(
                connection_, platform::x11::askX11ConnectionPid(connection_, window), nullptr);
            if (const pid_t pid = platform::x11::x11ConnectionPidOf(ids); pid > 0)
                found = pid;
            std::free(ids);
        }
        std::free(check);
        return found;
    }
    // Until the server has seen everything sent.
    void sync() {
        std::free(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }
    void destroyAll() {
        for (auto window : windows_)
            xcb_destroy_window(connection_, window);
        windows_.clear();
        sync();
    }

  private:
    xcb_atom_t atom(const char* name) {
        auto* reply = xcb_intern_atom_reply(
            connection_,
            xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
            nullptr);
        const xcb_atom_t found = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        std::free(reply);
        return found;
    }

    xcb_connection_t* connection_;
    xcb_screen_t* screen_ = nullptr;
    pid_t owner_;
    xcb_atom_t netWmPid_ = XCB_ATOM_NONE, netWmName_ = XCB_ATOM_NONE, utf8_ = XCB_ATOM_NONE;
    std::vector<xcb_window_t> windows_;
};

class Harness {
  public:
    Harness() { folders_.markInstructionsSeen(); }

    bool start() {
        std::filesystem::create_directories(folder_);
        desktop_.movePointer(640, 400);
        fileManager_.emplace("/usr/bin/pcmanfm",
                             std::vector<std::string>{"--new-win", folder_.string()});
        if (!e2e::eventually([&] { return !desktop_.clientWindowsOf(fileManager_->pid()).empty(); },
                             20))
            return fail("the file manager showed no window");
        program_.emplace(e2e::tarnwickExecutable(), std::vector<std::string>{});
        if (!program_->waitUntilHandling(SIGTERM, 20))
            return fail("tarnwick did not start");
        if (!e2e::eventually([&] { return (panel_ = desktop_.panelClient(pid())).has_value(); }))
            return fail("the panel never showed");
        desktop_.watchMapping(*panel_);
        hide();
        repaints_.emplace(*panel_);
        maker_.emplace(fileManager_->pid());
        idleWindow_.emplace(IDLE_TOOLKIT_WINDOW, std::vector<std::string>{});
        windowManager_ = maker_->windowManagerProcess();
        waitUntilQuiet({pid(), idleWindow_->pid()});
        return true;
    }

    void stop() {
        idleWindow_->sendSignal(SIGTERM);
        idleWindow_->waitForExit(10);
        program_->sendSignal(SIGTERM);
        program_->waitForExit(10);
        std::filesystem::remove_all(folder_.parent_path());
    }

    // Moves back and forth to the panel's right, within the fade, each
    // move once the server has it.
    void measureMoves(long moves) {
        show();
        const auto frame = desktop_.shownPanel(pid());
        if (!frame)
            return;
        const int right = frame->x + frame->width;
        const int middle = frame->y + frame->height / 2;
        const auto cpuPerMove = [&] {
            waitUntilQuiet(pid());
            const double before = cpuMilliseconds(pid());
            for (long move = 0; move < moves; ++move) {
                desktop_.movePointer(right + 20 + static_cast<int>(move % 100), middle);
                maker_->sync();
            }
            waitUntilQuiet(pid());
            return (cpuMilliseconds(pid()) - before) * 1000.0 / static_cast<double>(moves);
        };
        const double fading = cpuPerMove();
        hide();
        const double closed = cpuPerMove();
        desktop_.movePointer(640, 400);
        std::printf(
            "pointer moves: %.1f us of CPU each while fading, %.1f us with the panel "
            "closed\n",
            fading, closed);
        std::fflush(stdout);
    }

    void measure(long count, long presses) {
        waitUntilQuiet(pid());
        const long rssBefore = bench::residentKiB(pid());

        const PerWindow hidden = costPerWindow(count, "hidden");
        if (windowManager_)
            waitUntilQuiet({pid(), *windowManager_});
        const auto painted = chordToPainted(presses);
        show();
        const PerWindow shown = costPerWindow(count, "shown");
        hide();
        maker_->destroyAll();
        waitUntilQuiet(pid());

        // The burst arrives while the panel is shown; Escape comes once the
        // program is busy with it.
        show();
        const double cpuBefore = cpuMilliseconds(pid());
        for (long i = 0; i < count; ++i)
            maker_->make("Burst window " + std::to_string(i));
        maker_->flush();
        waitForCpu(cpuBefore + busyCpuPerWindow * static_cast<double>(count));
        const auto pressed = Clock::now();
        desktop_.tap(e2e::escapeKey);
        const bool answered = desktop_.waitForMapping(*panel_, false, 60);
        const double escapeMs = milliseconds(Clock::now() - pressed);
        waitUntilQuiet(pid());
        const double burstCpu = cpuMilliseconds(pid()) - cpuBefore;
        maker_->destroyAll();
        waitUntilQuiet(pid());
        const long rssAfter = bench::residentKiB(pid());

        std::printf("%5ld windows: chord to painted median %.2f ms, p99 %.2f ms (%zu presses)\n",
                    count, painted.first, painted.second, presses_);
        std::printf("%5ld windows: full repaints per showing: at most %d\n", count,
                    mostFullRepaints_);
        std::printf("%5ld windows: CPU per new window %.3f ms hidden, %.3f ms shown\n", count,
                    hidden.cpuMilliseconds, shown.cpuMilliseconds);
        std::printf("%5ld windows: wake-ups per new window %.1f hidden, %.1f shown\n", count,
                    hidden.wakeUps, shown.wakeUps);
        std::printf(
            "%5ld windows: an idle toolkit window's CPU per new window %.3f ms hidden, %.3f ms "
            "shown\n",
            count, hidden.idleWindowCpuMilliseconds, shown.idleWindowCpuMilliseconds);
        std::printf("%5ld windows: burst %.0f ms of CPU, Escape answered in %s%.1f ms\n", count,
                    burstCpu, answered ? "" : "more than ", escapeMs);
        std::printf("%5ld windows: RSS %.1f MB before, peak so far %.1f MB, %.1f MB after\n", count,
                    rssBefore / 1024.0, bench::statusField(pid(), "VmHWM") / 1024.0,
                    rssAfter / 1024.0);
        std::fflush(stdout);
    }

  private:
    pid_t pid() const { return program_->pid(); }

    bool fail(const char* reason) const {
        std::fprintf(stderr, "%s\n%s", reason, program_ ? program_->standardError().c_str() : "");
        return false;
    }

    void show() {
        desktop_.pressChord();
        desktop_.waitForMapping(*panel_, true, 10);
    }
    void hide() {
        desktop_.tap(e2e::escapeKey);
        desktop_.waitForMapping(*panel_, false, 10);
    }

    struct PerWindow {
        double cpuMilliseconds = 0;
        double wakeUps = 0;
        double idleWindowCpuMilliseconds = 0;
    };

    // Windows added one at a time, each once the server has it.
    PerWindow costPerWindow(long count, const char* state) {
        const double cpuBefore = cpuMilliseconds(pid());
        const double idleCpuBefore = cpuMilliseconds(idleWindow_->pid());
        const long switchesBefore = bench::contextSwitches(pid());
        for (long i = 0; i < count; ++i) {
            maker_->make(std::string("Window ") + state + " " + std::to_string(i));
            maker_->sync();
        }
        waitUntilQuiet({pid(), idleWindow_->pid()});
        const auto windows = static_cast<double>(count);
        return {(cpuMilliseconds(pid()) - cpuBefore) / windows,
                static_cast<double>(bench::contextSwitches(pid()) - switchesBefore) / windows,
                (cpuMilliseconds(idleWindow_->pid()) - idleCpuBefore) / windows};
    }

    // Until the program has had that much CPU in all, or a while has passed.
    void waitForCpu(double milliseconds) {
        const auto deadline = Clock::now() + std::chrono::seconds(2);
        while (cpuMilliseconds(pid()) < milliseconds && Clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::microseconds(200));
    }

    std::pair<double, double> chordToPainted(long presses) {
        std::vector<double> times;
        mostFullRepaints_ = 0;
        for (long press = 0; press < presses; ++press) {
            repaints_->clear();
            desktop_.key(e2e::controlKey, true);
            desktop_.key(e2e::altKey, true);
            const auto pressed = Clock::now();
            desktop_.key(e2e::shiftKey, true);
            const bool painted = desktop_.waitForMapping(*panel_, true, 10) &&
                                 repaints_->available() && repaints_->waitForRepaint(10);
            const auto drawn = Clock::now();
            for (auto key : {e2e::shiftKey, e2e::altKey, e2e::controlKey})
                desktop_.key(key, false);
            if (painted) {
                times.push_back(milliseconds(drawn - pressed));
                // Whatever else the showing draws comes within a few frames.
                mostFullRepaints_ = std::max(mostFullRepaints_, repaints_->fullRepaintsAfter(0.1));
            }
            hide();
        }
        presses_ = times.size();
        if (times.empty())
            return {0, 0};
        return {percentile(times, 0.5), percentile(times, 0.99)};
    }

    e2e::PrivateFolders folders_;
    std::filesystem::path folder_ = std::filesystem::temp_directory_path() /
                                    ("tarnwick-many-" + std::to_string(::getpid())) / "Documents";
    e2e::Desktop desktop_;
    std::optional<e2e::RunningProgram> fileManager_;
    std::optional<e2e::RunningProgram> program_;
    std::optional<e2e::RunningProgram> idleWindow_;
    std::optional<pid_t> windowManager_;
    std::optional<xcb_window_t> panel_;
    std::optional<bench::RepaintWatch> repaints_;
    std::optional<WindowMaker> maker_;
    std::size_t presses_ = 0;
    int mostFullRepaints_ = 0;
};

std::vector<long> counts(int argc, char** argv) {
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], "--counts") == 0) {
            std::vector<long> result;
            std::stringstream list(argv[i + 1]);
            std::string item;
            while (std::getline(list, item, ','))
                result.push_back(std::stol(item));
            return result;
        }
    }
    return {10, 100, 1000};
}

}  // namespace

int main(int argc, char** argv) {
    const long presses = bench::option(argc, argv, "presses", 20);
    Harness harness;
    if (!harness.start())
        return 1;
    harness.measureMoves(bench::option(argc, argv, "moves", 1000));
    for (const long count : counts(argc, argv))
        harness.measure(count, presses);
    harness.stop();
    return 0;
}
