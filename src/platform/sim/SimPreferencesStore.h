#pragma once

#include <memory>
#include <mutex>

#include "platform/LifetimeGuard.h"
#include "platform/MainLoop.h"
#include "platform/PreferencesStore.h"
#include "support/Signal.h"

namespace platform::sim {

// The preferences of the simulated desktop: a dictionary in memory. Each
// change tells the observers one turn later on the given loop. The values
// are guarded by a lock; announcing a change posts to the loop, so writers
// on other threads need a loop whose post() accepts them.
class SimPreferencesStore final : public PreferencesStore {
  public:
    explicit SimPreferencesStore(MainLoop& loop, PropertyList::Dictionary initial = {});

    std::optional<PropertyList> objectForKey(const std::string& key) const override;
    void setObject(const std::string& key, const PropertyList& value) override;
    void removeObject(const std::string& key) override;
    PropertyList::Dictionary dictionaryRepresentation() const override;
    Subscription observeChanges(std::function<void()> handler) override;

  private:
    void announceChange();

    MainLoop& loop_;
    mutable std::mutex mutex_;
    PropertyList::Dictionary values_;
    quillbox::Signal<> changed_;
    // The announcements posted to the loop may run after the store is gone.
    LifetimeGuard lifetime_;
};

}  // namespace platform::sim
