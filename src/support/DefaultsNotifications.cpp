#include "support/DefaultsNotifications.h"

#include <map>
#include <mutex>
#include <unordered_map>

namespace quillbox::detail {

namespace {

std::mutex& notificationLock() {
    static std::mutex lock;
    return lock;
}

std::unordered_map<std::string, std::map<UUID, NotificationStore>>& notifications() {
    static std::unordered_map<std::string, std::map<UUID, NotificationStore>> table;
    return table;
}

std::unordered_map<UUID, std::string>& notificationKeys() {
    static std::unordered_map<UUID, std::string> keys;
    return keys;
}

}  // namespace

NotificationHandle NotificationRegistry::add(const std::string& key,
                                             std::shared_ptr<const AnyUpdateAction> block) {
    std::lock_guard lock(notificationLock());
    const auto id = UUID::make();
    notifications()[key].emplace(id, NotificationStore{id, std::move(block), AnyKey{key}});
    notificationKeys()[id] = key;
    return NotificationHandle{id};
}

// The id's entry in notificationKeys and the inner map of its key stay, even
// when now empty: a later registration under the name reuses the map.
void NotificationRegistry::remove(const NotificationHandle& handle) {
    std::lock_guard lock(notificationLock());
    auto key = notificationKeys().find(handle.id);
    if (key == notificationKeys().end())
        return;
    notifications()[key->second].erase(handle.id);
}

ObserverSnapshot NotificationRegistry::snapshot(const std::string& key) {
    std::lock_guard lock(notificationLock());
    ObserverSnapshot observers;
    auto found = notifications().find(key);
    if (found == notifications().end())
        return observers;
    observers.reserve(found->second.size());
    for (const auto& [id, store] : found->second)
        observers.push_back(store.block);
    return observers;
}

void NotificationRegistry::notify(const ObserverSnapshot& observers, const std::any& value) {
    for (const auto& observer : observers)
        observer->perform(value);
}

}  // namespace quillbox::detail
