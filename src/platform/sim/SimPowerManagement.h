#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "platform/PowerManagement.h"

namespace platform::sim {

// Power management of the simulated desktop: remembers the assertions held,
// and can be told to refuse new ones.
class SimPowerManagement final : public PowerManagement {
  public:
    std::optional<AssertionID> assertionCreateWithName(const std::string& name) override;
    void assertionRelease(AssertionID assertion) override;

    // The names of the assertions held now, by identifier.
    std::map<AssertionID, std::string> heldAssertions() const;
    // How many assertions were ever made.
    int createdCount() const;
    void setRefusesAssertions(bool refuses);

  private:
    mutable std::mutex mutex_;
    std::map<AssertionID, std::string> held_;
    AssertionID lastID_ = 0;
    int created_ = 0;
    bool refuses_ = false;
};

}  // namespace platform::sim
