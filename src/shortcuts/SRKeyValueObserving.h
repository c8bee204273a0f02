#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/Subscription.h"
#include "shortcuts/SRValue.h"
#include "support/Signal.h"

namespace lirixkro {

// Archived bytes, as a property list in the platform's binary or XML form.
struct SRData {
    std::vector<std::uint8_t> bytes;
    friend bool operator==(const SRData&, const SRData&) = default;
};

// A value read at a key path: nothing (the null object), a number, a text, a
// shortcut, a shortcut's dictionary or archived data.
using SRObservedValue =
    std::variant<SRNull, SRNumber, std::string, SRShortcutRef, SRDictionary, SRData>;

// An object whose values can be read and watched by key path, as the
// platform's observable objects can.
class SRKeyValueObservable {
  public:
    virtual ~SRKeyValueObservable() = default;

    // SRNull for a key path the object doesn't have.
    virtual SRObservedValue valueForKeyPath(std::string_view keyPath) const = 0;
    // Sets the value at a key path; an object that can't, ignores it.
    virtual void setValueForKeyPath(const SRObservedValue& /*value*/,
                                    std::string_view /*keyPath*/) {}
    // Calls changed after every change of the value at the key path, on the
    // thread that changed it, until the subscription ends.
    virtual platform::Subscription observeKeyPath(std::string_view keyPath,
                                                  std::function<void()> changed) = 0;
};

// An object that keeps track of the editors of its values: a control tells
// it when it starts and ends editing one.
class SREditorRegistration {
  public:
    virtual ~SREditorRegistration() = default;
    virtual void objectDidBeginEditing(const void* editor) = 0;
    virtual void objectDidEndEditing(const void* editor) = 0;
};

// The change signals of an observable object, one for each key path that is
// asked for.
class SRKeyPathSignals {
  public:
    // Made on first ask.
    quillbox::Signal<>& signalFor(std::string_view keyPath);
    // Tells the observers of the key path, if it has any.
    void emit(std::string_view keyPath) const;
    std::size_t observerCount(std::string_view keyPath) const;

  private:
    std::map<std::string, std::unique_ptr<quillbox::Signal<>>, std::less<>> signals_;
};

// The plainest observable object: values by key, each change told to the
// observers of that key.
class SRKeyValueStore : public SRKeyValueObservable {
  public:
    SRObservedValue valueForKeyPath(std::string_view keyPath) const override;
    void setValueForKeyPath(const SRObservedValue& value, std::string_view keyPath) override;
    platform::Subscription observeKeyPath(std::string_view keyPath,
                                          std::function<void()> changed) override;

    std::size_t observerCount(std::string_view keyPath) const;

  private:
    mutable std::mutex lock_;
    std::map<std::string, SRObservedValue, std::less<>> values_;
    SRKeyPathSignals changes_;
};

// The shortcut an observed value stands for: a dictionary through
// shortcutWithDictionary, data through the archive, a shortcut as it is;
// nothing for the null object and any other value.
SRShortcutRef SRShortcutFromObservedValue(const SRObservedValue& value);

}  // namespace lirixkro
