#include "platform/sim/SimApplication.h"

namespace platform::sim {

SimApplication::SimApplication(SimWorkspace& workspace) : workspace_(workspace) {}

bool SimApplication::setActivationPolicy(ActivationPolicy policy) {
    policy_ = policy;
    policyHistory_.push_back(policy);
    if (auto own = workspace_.ownEntry())
        own->info().activationPolicy = policy;
    return true;
}

// An application that may not activate stays in the background whatever it
// asks.
void SimApplication::activate() {
    ++activateCount_;
    if (policy_ == ActivationPolicy::prohibited)
        return;
    auto own = workspace_.currentApplication();
    if (!own || isActive())
        return;
    workspace_.setFrontmostApplication(own);
}

bool SimApplication::isActive() const {
    auto own = workspace_.currentApplication();
    auto frontmost = workspace_.frontmostApplication();
    return own && frontmost && own->isEqual(*frontmost);
}

void SimApplication::terminate() {
    ++terminateCount_;
    if (terminateHandler_)
        terminateHandler_();
}

}  // namespace platform::sim
