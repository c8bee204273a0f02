#pragma once

#include <sys/types.h>

#include <compare>
#include <cstdint>
#include <string>

#include "platform/CFValue.h"

namespace platform::sim {

// Where a simulated element lives: its process and its number there. The
// application element of a process is number 0 of it; the system-wide
// element is number 0 of process 0.
struct SimAXElementKey {
    pid_t pid = 0;
    std::uint64_t id = 0;

    bool isApplication() const { return id == 0 && pid != 0; }
    bool isSystemWide() const { return id == 0 && pid == 0; }
    friend auto operator<=>(const SimAXElementKey&, const SimAXElementKey&) = default;
};

// The handle of a simulated element. Handles are equal when they name the
// same element, whichever simulation made them.
class SimAXUIElement final : public AXUIElementHandle {
  public:
    explicit SimAXUIElement(SimAXElementKey key) : key_(key) {}

    const SimAXElementKey& key() const { return key_; }

    bool isEqual(const AXUIElementHandle& other) const override;
    std::size_t hash() const override;
    std::string description() const override;

  private:
    SimAXElementKey key_;
};

}  // namespace platform::sim
