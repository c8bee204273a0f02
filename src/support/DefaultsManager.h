#pragma once

#include <any>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "platform/PreferencesStore.h"
#include "platform/PropertyList.h"
#include "platform/Subscription.h"
#include "support/Binding.h"
#include "support/DefaultsKey.h"
#include "support/DefaultsMigration.h"
#include "support/DefaultsNotifications.h"
#include "support/OptionalError.h"
#include "support/Signal.h"

namespace quillbox {

// The one typed way into the user's preferences. Keys fix a preference's
// name, types and conversion; reading falls back to nil or the key's
// default with at most one printed line, and nothing here throws.
//
// Every operation reaches the store that is installed at that moment
// (platform::preferences()), so a freshly installed store is used at once.
// getValue and setValue may run on any thread; observers run on the writer's
// thread with no lock held. Migrations belong to the start of the process.
class DefaultsManager : public DefaultsCoders,
                        public std::enable_shared_from_this<DefaultsManager> {
  public:
    template <typename Value, typename StoredValue = Value>
    using Key = quillbox::Key<Value, StoredValue>;
    template <typename Value, typename StoredValue = Value>
    using KeyWithDefault = quillbox::KeyWithDefault<Value, StoredValue>;
    template <typename Value, typename StoredValue = Value>
    using DefaultsReset = quillbox::DefaultsReset<Value, StoredValue>;
    template <typename Value, typename StoredValue = Value>
    using Transform = quillbox::Transform<Value, StoredValue>;
    using NotificationHandle = quillbox::NotificationHandle;
    using Migration = quillbox::Migration;

    // The stored version of the preferences, raised by each migration run.
    static constexpr const char* versionKeyName = "com.quillbox.defaultsVersion";

    static DefaultsManager& shared();

    DefaultsManager(const DefaultsManager&) = delete;
    DefaultsManager& operator=(const DefaultsManager&) = delete;

    // Sent on the main loop after every change of the store, made here or
    // from outside. It carries no key: observers read again.
    Signal<>& objectWillChange();

    template <typename Value, typename StoredValue>
    std::optional<Value> getValue(const Key<Value, StoredValue>& key) {
        auto object = store().objectForKey(key.rawValue);
        if (!object)
            return std::nullopt;
        if (key.transform && key.transform->get) {
            auto stored = fromPropertyList<StoredValue>(*object);
            if (!stored)
                return std::nullopt;
            try {
                return key.transform->get(*stored);
            } catch (...) {
                reportReadError(std::current_exception());
                return std::nullopt;
            }
        }
        return converted<Value>(*object);
    }

    template <typename Value, typename StoredValue>
    Value getValue(const KeyWithDefault<Value, StoredValue>& key) {
        auto object = store().objectForKey(key.rawValue);
        if (!object)
            return key.defaultValue;
        if (key.transform && key.transform->get) {
            auto stored = fromPropertyList<StoredValue>(*object);
            if (!stored)
                return key.defaultValue;
            try {
                auto value = key.transform->get(*stored);
                if (!value)
                    throw OptionalError::nilValue<Value>("Transform provided nil Optional");
                return std::move(*value);
            } catch (...) {
                reportReadError(std::current_exception());
                return key.defaultValue;
            }
        }
        auto value = converted<Value>(*object);
        return value ? std::move(*value) : key.defaultValue;
    }

    // Nothing removes the entry. A value the key can't convert is reported
    // in one line and leaves the store and the observers untouched. Equal
    // values are written and notified again.
    template <typename Value, typename StoredValue>
    void setValue(const std::optional<std::type_identity_t<Value>>& newValue,
                  const Key<Value, StoredValue>& key) {
        const auto observers = detail::NotificationRegistry::snapshot(key.rawValue);
        auto& preferences = store();
        if (!newValue) {
            preferences.removeObject(key.rawValue);
        } else if (!write(*newValue, key, preferences)) {
            return;
        }
        detail::NotificationRegistry::notify(observers, std::any(newValue));
    }

    // Goes through the key without its default: nothing removes the entry
    // here too, and the next read gives the default.
    template <typename Value, typename StoredValue>
    void setValue(const std::optional<std::type_identity_t<Value>>& newValue,
                  const KeyWithDefault<Value, StoredValue>& key) {
        setValue(newValue, key.withoutDefault());
    }

    template <typename Value, typename StoredValue>
    void removeValue(const Key<Value, StoredValue>& key) {
        setValue(std::optional<Value>(), key);
    }
    template <typename Value, typename StoredValue>
    void removeValue(const KeyWithDefault<Value, StoredValue>& key) {
        setValue(std::optional<Value>(), key);
    }

    // Stores the default explicitly (observers run) and reads it back.
    template <typename Value, typename StoredValue>
    Value reset(const KeyWithDefault<Value, StoredValue>& key) {
        auto resetting = key.reset();
        setValue(std::optional<Value>(std::move(resetting.resetValue)), resetting.key);
        return getValue(key);
    }

    // The key's default; the store isn't touched.
    template <typename Value, typename StoredValue>
    const Value& defaultValue(const KeyWithDefault<Value, StoredValue>& key) const {
        return key.defaultValue;
    }

    // Two-way bindings: each read and write goes through this manager, which
    // the binding keeps alive, with a copy of the key.
    template <typename Value, typename StoredValue>
    Binding<std::optional<Value>> binding(const Key<Value, StoredValue>& key) {
        auto self = shared_from_this();
        return Binding<std::optional<Value>>(
            [self, key] { return self->getValue(key); },
            [self, key](std::optional<Value> value) { self->setValue(value, key); });
    }
    template <typename Value, typename StoredValue>
    Binding<Value> binding(const KeyWithDefault<Value, StoredValue>& key) {
        auto self = shared_from_this();
        return Binding<Value>([self, key] { return self->getValue(key); },
                              [self, key](Value value) {
                                  self->setValue(std::optional<Value>(std::move(value)), key);
                              });
    }

    // manager[key] reads and assigns like the stored value itself.
    template <typename Value, typename StoredValue>
    Binding<std::optional<Value>> operator[](const Key<Value, StoredValue>& key) {
        return binding(key);
    }
    template <typename Value, typename StoredValue>
    Binding<Value> operator[](const KeyWithDefault<Value, StoredValue>& key) {
        return binding(key);
    }

    // The observer gets each value written through the manager: nil for a
    // removal.
    template <typename Value, typename StoredValue>
    NotificationHandle registerNotifications(
        const Key<Value, StoredValue>& key,
        std::type_identity_t<std::function<void(std::optional<Value>)>> action) {
        return detail::NotificationRegistry::add(
            key.rawValue,
            std::make_shared<detail::UpdateAction<std::optional<Value>>>(std::move(action)));
    }
    // The observer of a key with a default gets present values only: a
    // removal doesn't reach it.
    template <typename Value, typename StoredValue>
    NotificationHandle registerNotifications(
        const KeyWithDefault<Value, StoredValue>& key,
        std::type_identity_t<std::function<void(Value)>> action) {
        return detail::NotificationRegistry::add(
            key.rawValue, std::make_shared<detail::UpdateAction<Value>>(std::move(action)));
    }
    void deregisterNotifications(const NotificationHandle& handle);

    static void addMigration(Migration migration);
    // Runs, in ascending version and then registration order, the migrations
    // above the stored version, storing each one's version after it ran.
    static void runMigrations();
    static void clearMigrations();

  private:
    DefaultsManager() = default;

    platform::PreferencesStore& store();
    void observe(platform::PreferencesStore& preferences);

    template <typename Value>
    static std::optional<Value> converted(const platform::PropertyList& object) {
        if constexpr (PropertyListCodable<Value>) {
            return fromPropertyList<Value>(object);
        } else {
            return std::nullopt;
        }
    }

    template <typename Value, typename StoredValue>
    static std::optional<platform::PropertyList> storedObject(const Value& value,
                                                              const Key<Value, StoredValue>& key) {
        if (key.transform && key.transform->set) {
            auto stored = key.transform->set(value);
            if (!stored)
                return std::nullopt;
            return toPropertyList(*stored);
        }
        if constexpr (PropertyListCodable<Value>) {
            return toPropertyList(value);
        } else {
            throw std::logic_error("the value has no property-list form and the key no transform");
        }
    }

    template <typename Value, typename StoredValue>
    static bool write(const Value& value, const Key<Value, StoredValue>& key,
                      platform::PreferencesStore& preferences) {
        std::optional<platform::PropertyList> object;
        try {
            object = storedObject(value, key);
        } catch (...) {
            reportWriteError(key.description(), std::current_exception());
            return false;
        }
        if (object) {
            preferences.setObject(key.rawValue, *object);
        } else {
            preferences.removeObject(key.rawValue);
        }
        return true;
    }

    static void reportReadError(const std::exception_ptr& error);
    static void reportWriteError(const std::string& keyDescription,
                                 const std::exception_ptr& error);

    Signal<> objectWillChange_;
    std::mutex observationMutex_;
    // The store whose change signal feeds objectWillChange; the token dies
    // with the store's copy of our handler, so a new store at the same
    // address is still noticed.
    platform::PreferencesStore* observedStore_ = nullptr;
    std::weak_ptr<void> observedStoreAlive_;
    platform::Subscription bag_;
};

}  // namespace quillbox
