#include "platform/sim/SimPreferencesStore.h"

namespace platform::sim {

SimPreferencesStore::SimPreferencesStore(MainLoop& loop, PropertyList::Dictionary initial)
    : loop_(loop), values_(std::move(initial)) {}

std::optional<PropertyList> SimPreferencesStore::objectForKey(const std::string& key) const {
    std::lock_guard lock(mutex_);
    auto found = values_.find(key);
    if (found == values_.end())
        return std::nullopt;
    return found->second;
}

void SimPreferencesStore::setObject(const std::string& key, const PropertyList& value) {
    {
        std::lock_guard lock(mutex_);
        values_.insert_or_assign(key, value);
    }
    announceChange();
}

void SimPreferencesStore::removeObject(const std::string& key) {
    {
        std::lock_guard lock(mutex_);
        values_.erase(key);
    }
    announceChange();
}

PropertyList::Dictionary SimPreferencesStore::dictionaryRepresentation() const {
    std::lock_guard lock(mutex_);
    return values_;
}

Subscription SimPreferencesStore::observeChanges(std::function<void()> handler) {
    return changed_.connect(std::move(handler));
}

void SimPreferencesStore::announceChange() {
    loop_.post(lifetime_.guard([this] { changed_.emit(); }));
}

}  // namespace platform::sim
