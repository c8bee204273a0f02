#pragma once

#include <any>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "support/UUID.h"

namespace quillbox {

// What registering an observer gives back; deregistering takes it.
struct NotificationHandle {
    UUID id;
    friend bool operator==(const NotificationHandle&, const NotificationHandle&) = default;
};

namespace detail {

template <typename T>
struct IsOptionalValue : std::false_type {};
template <typename T>
struct IsOptionalValue<std::optional<T>> : std::true_type {};

struct AnyKey {
    std::string key;
};

// An observer's closure behind a type-erased call.
class AnyUpdateAction {
  public:
    virtual ~AnyUpdateAction() = default;
    virtual void perform(const std::any& value) const = 0;
};

// Calls the closure when the value converts to T: T itself, a present
// optional of T, or, for an optional T, its wrapped type. Any other value,
// an absent one included when T isn't optional, is skipped quietly.
template <typename T>
class UpdateAction final : public AnyUpdateAction {
  public:
    explicit UpdateAction(std::function<void(T)> body) : action(std::move(body)) {}

    void perform(const std::any& value) const override {
        if (auto converted = convert(value))
            action(std::move(*converted));
    }

    std::function<void(T)> action;

  private:
    static std::optional<T> convert(const std::any& value) {
        if (auto exact = std::any_cast<T>(&value))
            return *exact;
        if constexpr (IsOptionalValue<T>::value) {
            if (auto wrapped = std::any_cast<typename T::value_type>(&value))
                return T(*wrapped);
        } else {
            if (auto optional = std::any_cast<std::optional<T>>(&value); optional && *optional) {
                return **optional;
            }
        }
        return std::nullopt;
    }
};

struct NotificationStore {
    UUID id;
    std::shared_ptr<const AnyUpdateAction> block;
    AnyKey key;
};

using ObserverSnapshot = std::vector<std::shared_ptr<const AnyUpdateAction>>;

// The process-wide table of observers by key name, behind one lock that is
// held only to register, deregister and take a snapshot.
class NotificationRegistry {
  public:
    static NotificationHandle add(const std::string& key,
                                  std::shared_ptr<const AnyUpdateAction> block);
    static void remove(const NotificationHandle& handle);
    static ObserverSnapshot snapshot(const std::string& key);
    // Calls each observer in turn on this thread, with the lock released.
    static void notify(const ObserverSnapshot& observers, const std::any& value);
};

}  // namespace detail
}  // namespace quillbox

template <>
struct std::hash<quillbox::NotificationHandle> {
    std::size_t operator()(const quillbox::NotificationHandle& handle) const noexcept {
        return std::hash<quillbox::UUID>{}(handle.id);
    }
};
