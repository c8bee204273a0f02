#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/PropertyList.h"
#include "platform/Subscription.h"

namespace platform {

// The user's preferences: a key-value store of property-list values. Safe to
// use from any thread.
class PreferencesStore {
  public:
    virtual ~PreferencesStore() = default;

    virtual std::optional<PropertyList> objectForKey(const std::string& key) const = 0;
    virtual void setObject(const std::string& key, const PropertyList& value) = 0;
    virtual void removeObject(const std::string& key) = 0;
    // Every key and value, for diagnostics and tests.
    virtual PropertyList::Dictionary dictionaryRepresentation() const = 0;

    // Told on the main loop after any change, ours or one made from outside.
    // The subscription may outlive the store; ending it then does nothing.
    virtual Subscription observeChanges(std::function<void()> handler) = 0;
};

}  // namespace platform
