#pragma once

#include <sys/types.h>

#include <concepts>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "accessibility/AXError.h"
#include "accessibility/AttributeValue.h"
#include "accessibility/Vocabulary.h"
#include "platform/Accessibility.h"

namespace corvane {

// One accessibility element of another process: a typed wrapper around the
// platform's handle. Every operation answers in one of three ways: a value,
// nothing there (a quiet empty result), or the platform's code thrown as
// AXError. Which codes count as "nothing there" differs from operation to
// operation, as the platform's own calls differ.
//
// Callers share elements through std::shared_ptr. Constructing one never
// talks to the platform.
class UIElement {
  public:
    using Attribute = vocabulary::Attribute;
    using Action = vocabulary::Action;
    using Role = vocabulary::Role;
    using AXNotification = vocabulary::AXNotification;

    enum class Orientation : int {
        unknown = 0,
        vertical = 1,
        horizontal = 2,
    };
    // Nothing for a raw value outside the enumeration.
    static std::optional<Orientation> orientationFromRawValue(std::int64_t rawValue);

    explicit UIElement(platform::AXUIElementRef element);
    virtual ~UIElement();
    UIElement(const UIElement&) = delete;
    UIElement& operator=(const UIElement&) = delete;

    // Whether this process may use the accessibility interface; with the
    // prompt flag the platform may ask the user.
    static bool isProcessTrusted(bool withPrompt);
    // The timeout of the shared system-wide element, which applies to every
    // element of this process.
    static float globalMessagingTimeout();
    static void setGlobalMessagingTimeout(float seconds);

    const platform::AXUIElementRef& element() const { return element_; }

    virtual std::vector<Attribute> attributes() const;
    virtual bool attributeIsSupported(const Attribute& attribute) const;
    virtual bool attributeIsSettable(const Attribute& attribute) const;
    virtual std::optional<platform::CFValue> rawAttribute(const Attribute& attribute) const;

    // The value unpacked and converted to T; a value of another type throws
    // illegalArgument rather than giving nothing.
    template <typename T = AttributeValue>
    std::optional<T> attribute(const Attribute& attribute) const;

    // Reserved: throws notImplemented.
    virtual bool attributeBool(const Attribute& attribute) const;

    virtual void setAttribute(const Attribute& attribute, const AttributeValue& value) const;

    // Reads several attributes at once. A key is missing when the element
    // has no value for it; an embedded hard error aborts the whole read.
    template <std::same_as<vocabulary::Attribute>... Attributes>
    std::map<Attribute, AttributeValue> getMultipleAttributes(
        const Attributes&... attributes) const {
        return getMultipleAttributes(std::vector<Attribute>{attributes...});
    }
    virtual std::map<Attribute, AttributeValue> getMultipleAttributes(
        const std::vector<Attribute>& attributes) const;

    // A list attribute with each member unpacked and converted to T. A value
    // that isn't a list throws illegalArgument; a member that doesn't convert
    // is a fatal stop.
    template <typename T>
    std::optional<std::vector<T>> arrayAttribute(const Attribute& attribute) const;

    template <typename T>
    std::optional<std::vector<T>> valuesForAttribute(const Attribute& attribute,
                                                     std::int64_t startAtIndex,
                                                     std::int64_t maxValues) const;
    virtual std::optional<std::int64_t> valueCountForAttribute(const Attribute& attribute) const;

    virtual std::vector<Attribute> parameterizedAttributes() const;
    // The parameter goes to the platform as it is, unpacked by nobody; the
    // result must convert to T, or that is a fatal stop.
    template <typename T, std::convertible_to<platform::CFValue> U>
    std::optional<T> parameterizedAttribute(const Attribute& attribute, const U& parameter) const;

    virtual std::vector<Action> actions() const;
    virtual std::optional<std::string> actionDescription(const Action& action) const;
    virtual void performAction(const Action& action) const;

    virtual pid_t pid() const;

    // Seconds; 0 means the platform's default. The getter never asks the
    // platform.
    float messagingTimeout() const { return messagingTimeout_; }
    virtual void setMessagingTimeout(float seconds);

    // The element at a point on the screen; nothing when nothing lies there.
    virtual std::shared_ptr<UIElement> elementAtPosition(float x, float y) const;
    // Reserved: throws notImplemented.
    virtual std::shared_ptr<UIElement> elementAtPosition(platform::CGPoint point) const;

    // The same operations by the raw platform word.
    virtual std::vector<std::string> attributesAsStrings() const;
    virtual bool attributeIsSupported(const std::string& attribute) const;
    virtual bool attributeIsSettable(const std::string& attribute) const;
    template <typename T = AttributeValue>
    std::optional<T> attribute(const std::string& attribute) const {
        return this->attribute<T>(Attribute(attribute));
    }
    virtual void setAttribute(const std::string& attribute, const AttributeValue& value) const;
    virtual std::map<std::string, AttributeValue> getMultipleAttributes(
        const std::vector<std::string>& attributes) const;
    template <typename T>
    std::optional<std::vector<T>> arrayAttribute(const std::string& attribute) const {
        return arrayAttribute<T>(Attribute(attribute));
    }
    template <typename T>
    std::optional<std::vector<T>> valuesForAttribute(const std::string& attribute,
                                                     std::int64_t startAtIndex,
                                                     std::int64_t maxValues) const {
        return valuesForAttribute<T>(Attribute(attribute), startAtIndex, maxValues);
    }
    virtual std::optional<std::int64_t> valueCountForAttribute(const std::string& attribute) const;
    virtual std::vector<std::string> parameterizedAttributesAsStrings() const;
    template <typename T, std::convertible_to<platform::CFValue> U>
    std::optional<T> parameterizedAttribute(const std::string& attribute,
                                            const U& parameter) const {
        return parameterizedAttribute<T>(Attribute(attribute), parameter);
    }
    virtual std::vector<std::string> actionsAsStrings() const;
    virtual std::optional<std::string> actionDescription(const std::string& action) const;
    virtual void performAction(const std::string& action) const;

    std::optional<Role> role() const;
    std::optional<Role::Subrole> subrole() const;

    // Every attribute of the element with its value, for diagnostics.
    std::string inspect() const;
    // <role "detail" (pid=n)>, as diagnostics print an element.
    std::string description() const;

    // The same platform element, whatever the class of either object.
    friend bool operator==(const UIElement& a, const UIElement& b) {
        return platform::CFEqual(a.element_, b.element_);
    }

  protected:
    virtual AttributeValue unpackAXValue(const platform::CFValue& object) const;
    // The value of a read as the type asked for; nothing when it is of
    // another type.
    template <typename T>
    std::optional<T> castRead(const platform::CFValue& raw) const;

  private:
    virtual platform::CFValue::Array fetchMultiAttrValues(
        const std::vector<std::string>& attributes) const;
    template <typename Key>
    std::map<Key, AttributeValue> packMultiAttrValues(const std::vector<Key>& keys,
                                                      const platform::CFValue::Array& values) const;

    std::optional<platform::CFValue> rawValuesForAttribute(const Attribute& attribute,
                                                           std::int64_t startAtIndex,
                                                           std::int64_t maxValues) const;
    std::optional<platform::CFValue> rawParameterizedAttribute(
        const Attribute& attribute, const platform::CFValue& parameter) const;
    template <typename T>
    std::vector<T> unpackMembers(const platform::CFValue::Array& members,
                                 const Attribute& attribute) const;

    platform::AXUIElementRef element_;
    float messagingTimeout_ = 0;
};

namespace detail {
[[noreturn]] void failedMemberCast(const std::string& attribute);
[[noreturn]] void failedResultCast(const std::string& attribute);
}  // namespace detail

template <typename T>
std::optional<T> UIElement::attribute(const Attribute& attribute) const {
    auto raw = rawAttribute(attribute);
    if (!raw)
        return std::nullopt;
    auto value = castRead<T>(*raw);
    if (!value)
        throw AXError::illegalArgument;
    return value;
}

// Texts, numbers and Booleans convert from the platform object as it is:
// unpacking it first would only copy it once more, and what unpacks to
// something else (an element, a boxed value) converts to none of them.
template <typename T>
std::optional<T> UIElement::castRead(const platform::CFValue& raw) const {
    if constexpr (std::is_same_v<T, std::string> || std::is_arithmetic_v<T>)
        return detail::castObject<T>(raw);
    else
        return attributeCast<T>(unpackAXValue(raw));
}

template <typename T>
std::vector<T> UIElement::unpackMembers(const platform::CFValue::Array& members,
                                        const Attribute& attribute) const {
    std::vector<T> result;
    result.reserve(members.size());
    for (const auto& member : members) {
        auto value = attributeCast<T>(unpackAXValue(member));
        if (!value)
            detail::failedMemberCast(attribute.rawValue);
        result.push_back(std::move(*value));
    }
    return result;
}

template <typename T>
std::optional<std::vector<T>> UIElement::arrayAttribute(const Attribute& attribute) const {
    auto value = this->attribute<AttributeValue>(attribute);
    if (!value)
        return std::nullopt;
    auto members = attributeCast<platform::CFValue::Array>(*value);
    if (!members)
        throw AXError::illegalArgument;
    return unpackMembers<T>(*members, attribute);
}

template <typename T>
std::optional<std::vector<T>> UIElement::valuesForAttribute(const Attribute& attribute,
                                                            std::int64_t startAtIndex,
                                                            std::int64_t maxValues) const {
    auto raw = rawValuesForAttribute(attribute, startAtIndex, maxValues);
    if (!raw)
        return std::nullopt;
    const auto* members = raw->get<platform::CFValue::Array>();
    if (!members)
        throw AXError::illegalArgument;
    return unpackMembers<T>(*members, attribute);
}

template <typename T, std::convertible_to<platform::CFValue> U>
std::optional<T> UIElement::parameterizedAttribute(const Attribute& attribute,
                                                   const U& parameter) const {
    auto raw = rawParameterizedAttribute(attribute, platform::CFValue(parameter));
    if (!raw)
        return std::nullopt;
    auto value = attributeCast<T>(unpackAXValue(*raw));
    if (!value)
        detail::failedResultCast(attribute.rawValue);
    return value;
}

}  // namespace corvane

template <>
struct std::hash<corvane::UIElement> {
    std::size_t operator()(const corvane::UIElement& element) const noexcept {
        return platform::CFHash(element.element());
    }
};
