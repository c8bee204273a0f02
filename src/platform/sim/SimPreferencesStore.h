#pragma once

#include <utility>

#include "platform/MemoryPreferencesStore.h"

namespace platform::sim {

// The preferences of the simulated desktop: a dictionary in memory. Each
// change tells the observers one turn later on the given loop.
class SimPreferencesStore final : public MemoryPreferencesStore {
  public:
    explicit SimPreferencesStore(MainLoop& loop, PropertyList::Dictionary initial = {})
        : MemoryPreferencesStore(loop, std::move(initial)) {}
};

}  // namespace platform::sim
