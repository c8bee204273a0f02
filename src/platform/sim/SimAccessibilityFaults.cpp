#include "platform/sim/SimAccessibilityFaults.h"

namespace platform::sim {

void SimAXFaults::add(SimAXCall call, SimAXFault fault, AXUIElementRef element,
                      std::optional<std::string> name, int times) {
    if (times == 0)
        return;
    rules_.push_back({call, std::move(fault), std::move(element), std::move(name), times});
}

std::optional<SimAXFault> SimAXFaults::take(SimAXCall call, const AXUIElementRef& element,
                                            const std::string& name) {
    for (auto it = rules_.rbegin(); it != rules_.rend(); ++it) {
        if (it->call != SimAXCall::any && it->call != call)
            continue;
        if (it->element && !CFEqual(it->element, element))
            continue;
        if (it->name && *it->name != name)
            continue;
        auto fault = it->fault;
        if (it->remaining > 0 && --it->remaining == 0)
            rules_.erase(std::next(it).base());
        return fault;
    }
    return std::nullopt;
}

}  // namespace platform::sim
