#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <string>

#include "platform/HandlerList.h"
#include "platform/LifetimeGuard.h"
#include "platform/MainLoop.h"
#include "platform/PreferencesStore.h"

namespace platform {

// The part every preferences store shares: the entries in memory under a
// lock, and each change of ours told to the observers one turn later on the
// loop. Announcing posts to the loop, so writers on other threads need a
// loop whose post() accepts them. A store that also keeps the entries
// elsewhere writes them there in written().
class MemoryPreferencesStore : public PreferencesStore {
  public:
    std::optional<PropertyList> objectForKey(const std::string& key) const final;
    void setObject(const std::string& key, const PropertyList& value) final;
    void removeObject(const std::string& key) final;
    PropertyList::Dictionary dictionaryRepresentation() const final;
    Subscription observeChanges(std::function<void()> handler) final;

  protected:
    explicit MemoryPreferencesStore(MainLoop& loop, PropertyList::Dictionary initial = {});

    // After each change of ours, with the lock held.
    virtual void written() {}
    // Tells the observers at once; on the loop only.
    void announceChange() const { changed_.call(); }

    MainLoop& loop_;
    mutable std::mutex mutex_;
    PropertyList::Dictionary values_;

  private:
    void announceChangeLater();

    HandlerList<> changed_;
    // The announcements posted to the loop may run after the store is gone.
    LifetimeGuard lifetime_;
};

}  // namespace platform
