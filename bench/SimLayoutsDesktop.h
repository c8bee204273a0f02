#pragma once

#include "platform/Platform.h"
#include "platform/sim/SimKeyboardLayouts.h"
#include "platform/sim/SimMainLoop.h"
#include "support/Log.h"

namespace benchsupport {

// The simulated layouts installed, with the log going nowhere.
struct SimLayoutsDesktop {
    SimLayoutsDesktop()
        : layouts(loop), install(services()), previousSink(quillbox::Log::exchangeSink({})) {}
    ~SimLayoutsDesktop() { quillbox::Log::exchangeSink(std::move(previousSink)); }
    platform::Services services() {
        platform::Services services;
        services.mainLoop = &loop;
        services.keyboardLayouts = &layouts;
        return services;
    }
    platform::sim::SimMainLoop loop;
    platform::sim::SimKeyboardLayouts layouts;
    platform::ScopedInstall install;
    quillbox::Log::Sink previousSink;
};

}  // namespace benchsupport
