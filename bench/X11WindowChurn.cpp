// The X11 accessibility backend's memory while windows come and go: each
// cycle makes a window of this process, waits until the backend lists it,
// reads its role and title as the program does, then destroys it and waits
// until the backend has let it go. Prints this process's resident memory
// before and after the cycles (after a warm-up that fills the allocator and
// the backend's tables).
//   X11WindowChurn [--cycles N]     (2,000 by default)
// Run under scripts/virtual-desktop.sh.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <optional>

#include "Footprint.h"
#include "HarnessOptions.h"
#include "X11OwnWindows.h"
#include "platform/x11/X11Accessibility.h"

namespace {

using platform::AXUIElementRef;
using platform::CFValue;

struct Backend {
    platform::sim::SimMainLoop loop;
    std::unique_ptr<platform::x11::X11Accessibility> ax =
        platform::x11::X11Accessibility::open(loop);
    AXUIElementRef application = ax ? ax->createApplication(getpid()) : nullptr;
    bench::OwnWindows windows{loop, [this] { return readWindows(); }};

    // Lists the windows and reads each one's role and title.
    std::size_t readWindows() {
        std::optional<CFValue> list;
        ax->copyAttributeValue(application, "AXWindows", list);
        const auto* array = list ? list->get<CFValue::Array>() : nullptr;
        if (!array)
            return 0;
        for (const auto& item : *array) {
            for (const char* attribute : {"AXRole", "AXTitle"}) {
                std::optional<CFValue> value;
                ax->copyAttributeValue(*item.get<AXUIElementRef>(), attribute, value);
            }
        }
        return array->size();
    }

    bool cycle() { return windows.ensure(1) && windows.ensure(0); }
};

}  // namespace

int main(int argc, char** argv) {
    const long cycles = bench::option(argc, argv, "cycles", 2000);
    Backend backend;
    if (!backend.ax) {
        std::fprintf(stderr, "no display to open\n");
        return 1;
    }
    for (long warmUp = 0; warmUp < std::min(cycles, 50L); ++warmUp) {
        if (!backend.cycle()) {
            std::fprintf(stderr, "the window manager doesn't manage our windows\n");
            return 1;
        }
    }
    const long before = bench::residentKiB(getpid());
    for (long i = 0; i < cycles; ++i) {
        if (!backend.cycle()) {
            std::fprintf(stderr, "cycle %ld: the window was not seen coming or going\n", i);
            return 1;
        }
    }
    bench::printGrowth("window create/destroy cycles", cycles, before,
                       bench::residentKiB(getpid()));
    return backend.ax->isConnected() ? 0 : 1;
}
