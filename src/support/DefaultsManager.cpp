#include "support/DefaultsManager.h"

#include <algorithm>
#include <vector>

#include "platform/Platform.h"
#include "support/ErrorText.h"
#include "support/StandardOutput.h"

namespace quillbox {

namespace {

std::vector<Migration>& migrations() {
    static std::vector<Migration> registered;
    return registered;
}

}  // namespace

DefaultsManager& DefaultsManager::shared() {
    static const std::shared_ptr<DefaultsManager> instance(new DefaultsManager);
    return *instance;
}

Signal<>& DefaultsManager::objectWillChange() {
    if (auto* preferences = platform::installed().preferences)
        observe(*preferences);
    return objectWillChange_;
}

platform::PreferencesStore& DefaultsManager::store() {
    auto& preferences = platform::preferences();
    observe(preferences);
    return preferences;
}

void DefaultsManager::observe(platform::PreferencesStore& preferences) {
    std::lock_guard lock(observationMutex_);
    if (&preferences == observedStore_ && !observedStoreAlive_.expired())
        return;
    auto alive = std::make_shared<char>();
    bag_ = preferences.observeChanges([weakSelf = weak_from_this(), alive] {
        if (auto self = weakSelf.lock())
            self->objectWillChange_.emit();
    });
    observedStore_ = &preferences;
    observedStoreAlive_ = alive;
}

void DefaultsManager::deregisterNotifications(const NotificationHandle& handle) {
    detail::NotificationRegistry::remove(handle);
}

void DefaultsManager::addMigration(Migration migration) {
    migrations().push_back(std::move(migration));
}

void DefaultsManager::clearMigrations() {
    migrations().clear();
}

void DefaultsManager::runMigrations() {
    auto& manager = shared();
    const KeyWithDefault<std::int64_t> versionKey(versionKeyName, -1);
    const std::int64_t storedVersion = manager.getValue(versionKey);

    std::vector<Migration> pending;
    std::copy_if(migrations().begin(), migrations().end(), std::back_inserter(pending),
                 [storedVersion](const Migration& migration) {
                     return std::int64_t{migration.migrationVersion} > storedVersion;
                 });
    std::stable_sort(pending.begin(), pending.end(), [](const Migration& a, const Migration& b) {
        return a.migrationVersion < b.migrationVersion;
    });

    for (const auto& migration : pending) {
        migration.onMigrate();
        const auto observers = detail::NotificationRegistry::snapshot(versionKeyName);
        const std::int64_t version = migration.migrationVersion;
        manager.store().setObject(versionKeyName, platform::PropertyList(version));
        detail::NotificationRegistry::notify(observers, std::any(std::optional(version)));
    }
}

void DefaultsManager::reportReadError(const std::exception_ptr& error) {
    printLine("Error converting stored data for key: " + errorText(error));
}

void DefaultsManager::reportWriteError(const std::string& keyDescription,
                                       const std::exception_ptr& error) {
    printLine("Error converting value for key " + keyDescription + " to data: " + errorText(error));
}

}  // namespace quillbox
