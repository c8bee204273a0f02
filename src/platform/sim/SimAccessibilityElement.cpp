#include "platform/sim/SimAccessibilityElement.h"

#include <functional>

namespace platform::sim {

bool SimAXUIElement::isEqual(const AXUIElementHandle& other) const {
    const auto* simulated = dynamic_cast<const SimAXUIElement*>(&other);
    return simulated && simulated->key_ == key_;
}

std::size_t SimAXUIElement::hash() const {
    const auto pidHash = std::hash<pid_t>{}(key_.pid);
    return pidHash ^ (std::hash<std::uint64_t>{}(key_.id) + 0x9e3779b97f4a7c15ULL + (pidHash << 6) +
                      (pidHash >> 2));
}

std::string SimAXUIElement::description() const {
    if (key_.isSystemWide())
        return "<AXUIElement System Wide>";
    return "<AXUIElement " + std::to_string(key_.id) + " {pid=" + std::to_string(key_.pid) + "}>";
}

}  // namespace platform::sim
