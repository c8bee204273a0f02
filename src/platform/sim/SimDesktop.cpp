#include "platform/sim/SimDesktop.h"

namespace platform::sim {

SimDesktop::SimDesktop() : workspace_(loop_) {}
SimDesktop::~SimDesktop() = default;

Services SimDesktop::services() {
    Services services;
    services.mainLoop = &loop_;
    services.workspace = &workspace_;
    return services;
}

}  // namespace platform::sim
