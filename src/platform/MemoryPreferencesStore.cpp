#include "platform/MemoryPreferencesStore.h"

#include <utility>

namespace platform {

MemoryPreferencesStore::MemoryPreferencesStore(MainLoop& loop, PropertyList::Dictionary initial)
    : loop_(loop), values_(std::move(initial)) {}

std::optional<PropertyList> MemoryPreferencesStore::objectForKey(const std::string& key) const {
    std::lock_guard lock(mutex_);
    auto found = values_.find(key);
    if (found == values_.end())
        return std::nullopt;
    return found->second;
}

void MemoryPreferencesStore::setObject(const std::string& key, const PropertyList& value) {
    {
        std::lock_guard lock(mutex_);
        values_.insert_or_assign(key, value);
        written();
    }
    announceChangeLater();
}

void MemoryPreferencesStore::removeObject(const std::string& key) {
    {
        std::lock_guard lock(mutex_);
        values_.erase(key);
        written();
    }
    announceChangeLater();
}

PropertyList::Dictionary MemoryPreferencesStore::dictionaryRepresentation() const {
    std::lock_guard lock(mutex_);
    return values_;
}

Subscription MemoryPreferencesStore::observeChanges(std::function<void()> handler) {
    return changed_.subscribe(std::move(handler));
}

void MemoryPreferencesStore::announceChangeLater() {
    loop_.post(lifetime_.guard([this] { changed_.call(); }));
}

}  // namespace platform
