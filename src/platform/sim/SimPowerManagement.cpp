#include "platform/sim/SimPowerManagement.h"

#include "platform/LockedAccess.h"

namespace platform::sim {

std::optional<PowerManagement::AssertionID> SimPowerManagement::assertionCreateWithName(
    const std::string& name) {
    std::lock_guard lock(mutex_);
    if (refuses_)
        return std::nullopt;
    ++created_;
    held_.emplace(++lastID_, name);
    return lastID_;
}

void SimPowerManagement::assertionRelease(AssertionID assertion) {
    std::lock_guard lock(mutex_);
    held_.erase(assertion);
}

std::map<PowerManagement::AssertionID, std::string> SimPowerManagement::heldAssertions() const {
    return readLocked(mutex_, held_);
}

int SimPowerManagement::createdCount() const {
    return readLocked(mutex_, created_);
}

void SimPowerManagement::setRefusesAssertions(bool refuses) {
    writeLocked(mutex_, refuses_, refuses);
}

}  // namespace platform::sim
