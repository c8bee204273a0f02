#include "platform/sim/SimRunningApplication.h"

namespace platform::sim {

std::string SimRunningApplication::description() const {
    return "<SimRunningApplication pid=" + std::to_string(info_.processIdentifier) + " " +
           info_.bundleIdentifier.value_or("(no bundle)") + ">";
}

}  // namespace platform::sim
