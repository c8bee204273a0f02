#pragma once

#include "platform/Platform.h"
#include "platform/sim/SimKeyboardLayouts.h"
#include "platform/sim/SimMainLoop.h"
#include "support/Log.h"

namespace fuzzing {

// The simulated layouts installed once for the whole fuzz run, with the log
// silenced: the shortcut code translates keys through them.
inline platform::sim::SimKeyboardLayouts& installDesktopOnce() {
    static platform::sim::SimMainLoop loop;
    static platform::sim::SimKeyboardLayouts layouts(loop);
    static const bool installed = [] {
        platform::Services services;
        services.mainLoop = &loop;
        services.keyboardLayouts = &layouts;
        platform::install(services);
        quillbox::Log::exchangeSink({});
        return true;
    }();
    (void)installed;
    return layouts;
}

}  // namespace fuzzing
