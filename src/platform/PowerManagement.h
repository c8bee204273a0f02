#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace platform {

// The system's power management: named assertions that keep the display
// awake and the screen saver off while they are held.
class PowerManagement {
  public:
    using AssertionID = std::uint32_t;

    virtual ~PowerManagement() = default;

    // IOPMAssertionCreateWithName with the type that prevents display sleep;
    // the name says why, to the user and to tools. Nothing when the system
    // refuses.
    virtual std::optional<AssertionID> assertionCreateWithName(const std::string& name) = 0;
    // IOPMAssertionRelease: display sleep and the screen saver may come back
    // once no assertion is held. An unknown identifier is ignored.
    virtual void assertionRelease(AssertionID assertion) = 0;
};

}  // namespace platform
