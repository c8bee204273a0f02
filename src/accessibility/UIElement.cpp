#include "accessibility/UIElement.h"

#include "accessibility/SystemWideElement.h"
#include "platform/Platform.h"
#include "support/Fatal.h"

namespace corvane {

namespace {

namespace ax = platform::axError;
using platform::AXErrorCode;
using platform::CFValue;

platform::Accessibility& platformAccessibility() {
    return platform::accessibility();
}

bool isNoValueOrUnsupported(AXErrorCode code) {
    return code == ax::noValue || code == ax::attributeUnsupported;
}

void throwUnlessSuccess(AXErrorCode code) {
    if (code != ax::success)
        throw AXError(code);
}

// The copy operations whose out-parameter tells a hard failure from a quiet
// one: with no names or no value the result is empty; another code is thrown
// only when the platform also wrote something, and an empty out-parameter
// makes it quiet too.
std::optional<CFValue> outputOrQuietFailure(AXErrorCode code, std::optional<CFValue> output) {
    if (code == ax::success)
        return output;
    if (isNoValueOrUnsupported(code))
        return std::nullopt;
    if (output)
        throw AXError(code);
    return std::nullopt;
}

// A list of names that the platform guarantees to be texts.
std::vector<std::string> forcedNames(const std::optional<CFValue>& names) {
    if (!names)
        return {};
    const auto* list = names->get<CFValue::Array>();
    if (!list)
        quillbox::fatalError("Attribute names are not a list");
    std::vector<std::string> result;
    for (const auto& name : *list) {
        const auto* text = name.get<std::string>();
        if (!text)
            quillbox::fatalError("Attribute name is not a text");
        result.push_back(*text);
    }
    return result;
}

// A list of names converted where possible: anything else gives none.
std::vector<std::string> conditionalNames(const std::optional<CFValue>& names) {
    const auto* list = names ? names->get<CFValue::Array>() : nullptr;
    if (!list)
        return {};
    std::vector<std::string> result;
    for (const auto& name : *list) {
        const auto* text = name.get<std::string>();
        if (!text)
            return {};
        result.push_back(*text);
    }
    return result;
}

template <typename Word>
std::vector<Word> wrapped(const std::vector<std::string>& names) {
    return {names.begin(), names.end()};
}

template <typename Word>
std::vector<std::string> rawValues(const std::vector<Word>& words) {
    std::vector<std::string> result;
    result.reserve(words.size());
    for (const auto& word : words)
        result.push_back(word.rawValue);
    return result;
}

}  // namespace

namespace detail {

void failedMemberCast(const std::string& attribute) {
    quillbox::fatalError("Could not cast a member of " + attribute + " to the requested type");
}

void failedResultCast(const std::string& attribute) {
    quillbox::fatalError("Could not cast the value of " + attribute + " to the requested type");
}

}  // namespace detail

std::optional<UIElement::Orientation> UIElement::orientationFromRawValue(std::int64_t rawValue) {
    if (rawValue < 0 || rawValue > static_cast<std::int64_t>(Orientation::horizontal)) {
        return std::nullopt;
    }
    return static_cast<Orientation>(rawValue);
}

UIElement::UIElement(platform::AXUIElementRef element) : element_(std::move(element)) {}
UIElement::~UIElement() = default;

bool UIElement::isProcessTrusted(bool withPrompt) {
    return platformAccessibility().isProcessTrustedWithOptions(
        {{"AXTrustedCheckOptionPrompt", CFValue(withPrompt)}});
}

float UIElement::globalMessagingTimeout() {
    return systemWideElement()->messagingTimeout();
}

void UIElement::setGlobalMessagingTimeout(float seconds) {
    systemWideElement()->setMessagingTimeout(seconds);
}

std::vector<UIElement::Attribute> UIElement::attributes() const {
    std::optional<CFValue> names;
    const auto code = platformAccessibility().copyAttributeNames(element_, names);
    return wrapped<Attribute>(forcedNames(outputOrQuietFailure(code, std::move(names))));
}

bool UIElement::attributeIsSupported(const Attribute& attribute) const {
    std::optional<CFValue> values;
    const auto code =
        platformAccessibility().copyAttributeValues(element_, attribute.rawValue, 0, 0, values);
    if (code == ax::success || code == ax::noValue)
        return true;
    if (code == ax::attributeUnsupported)
        return false;
    throw AXError(code);
}

bool UIElement::attributeIsSettable(const Attribute& attribute) const {
    bool settable = false;
    const auto code =
        platformAccessibility().isAttributeSettable(element_, attribute.rawValue, settable);
    if (code == ax::success)
        return settable;
    if (isNoValueOrUnsupported(code))
        return false;
    throw AXError(code);
}

std::optional<CFValue> UIElement::rawAttribute(const Attribute& attribute) const {
    std::optional<CFValue> value;
    const auto code =
        platformAccessibility().copyAttributeValue(element_, attribute.rawValue, value);
    if (code == ax::success)
        return value;
    if (isNoValueOrUnsupported(code))
        return std::nullopt;
    throw AXError(code);
}

bool UIElement::attributeBool(const Attribute&) const {
    throw AXError::notImplemented;
}

void UIElement::setAttribute(const Attribute& attribute, const AttributeValue& value) const {
    throwUnlessSuccess(platformAccessibility().setAttributeValue(element_, attribute.rawValue,
                                                                 packAXValue(value)));
}

std::map<UIElement::Attribute, AttributeValue> UIElement::getMultipleAttributes(
    const std::vector<Attribute>& attributes) const {
    return packMultiAttrValues(attributes, fetchMultiAttrValues(rawValues(attributes)));
}

CFValue::Array UIElement::fetchMultiAttrValues(const std::vector<std::string>& attributes) const {
    std::optional<CFValue> values;
    throwUnlessSuccess(
        platformAccessibility().copyMultipleAttributeValues(element_, attributes, 0, values));
    const auto* list = values ? values->get<CFValue::Array>() : nullptr;
    if (!list)
        quillbox::fatalError("The platform gave no list of values for several attributes");
    return *list;
}

template <typename Key>
std::map<Key, AttributeValue> UIElement::packMultiAttrValues(const std::vector<Key>& keys,
                                                             const CFValue::Array& values) const {
    std::map<Key, AttributeValue> result;
    const auto count = std::min(keys.size(), values.size());
    for (std::size_t i = 0; i < count; ++i) {
        const auto& value = values[i];
        if (value.is<platform::CFNull>())
            continue;
        if (const auto* box = value.get<platform::AXValue>();
            box && box->type == platform::AXValue::Type::axError) {
            const auto* embedded = std::get_if<AXErrorCode>(&box->value);
            const auto code = embedded ? *embedded : ax::success;
            if (isNoValueOrUnsupported(code))
                continue;
            throw AXError(code);
        }
        result.insert_or_assign(keys[i], unpackAXValue(value));
    }
    return result;
}

std::optional<CFValue> UIElement::rawValuesForAttribute(const Attribute& attribute,
                                                        std::int64_t startAtIndex,
                                                        std::int64_t maxValues) const {
    std::optional<CFValue> values;
    const auto code = platformAccessibility().copyAttributeValues(element_, attribute.rawValue,
                                                                  startAtIndex, maxValues, values);
    return outputOrQuietFailure(code, std::move(values));
}

std::optional<std::int64_t> UIElement::valueCountForAttribute(const Attribute& attribute) const {
    std::int64_t count = 0;
    const auto code =
        platformAccessibility().getAttributeValueCount(element_, attribute.rawValue, count);
    if (code == ax::success)
        return count;
    if (code == ax::attributeUnsupported || code == ax::illegalArgument)
        return std::nullopt;
    throw AXError(code);
}

std::vector<UIElement::Attribute> UIElement::parameterizedAttributes() const {
    std::optional<CFValue> names;
    const auto code = platformAccessibility().copyParameterizedAttributeNames(element_, names);
    return wrapped<Attribute>(conditionalNames(outputOrQuietFailure(code, std::move(names))));
}

std::optional<CFValue> UIElement::rawParameterizedAttribute(const Attribute& attribute,
                                                            const CFValue& parameter) const {
    std::optional<CFValue> value;
    const auto code = platformAccessibility().copyParameterizedAttributeValue(
        element_, attribute.rawValue, parameter, value);
    return outputOrQuietFailure(code, std::move(value));
}

std::vector<UIElement::Action> UIElement::actions() const {
    std::optional<CFValue> names;
    const auto code = platformAccessibility().copyActionNames(element_, names);
    return wrapped<Action>(conditionalNames(outputOrQuietFailure(code, std::move(names))));
}

std::optional<std::string> UIElement::actionDescription(const Action& action) const {
    std::optional<CFValue> description;
    const auto code =
        platformAccessibility().copyActionDescription(element_, action.rawValue, description);
    if (code == ax::success) {
        const auto* text = description ? description->get<std::string>() : nullptr;
        return text ? std::optional<std::string>(*text) : std::nullopt;
    }
    if (isNoValueOrUnsupported(code))
        return std::nullopt;
    throw AXError(code);
}

void UIElement::performAction(const Action& action) const {
    throwUnlessSuccess(platformAccessibility().performAction(element_, action.rawValue));
}

pid_t UIElement::pid() const {
    pid_t pid = -1;
    throwUnlessSuccess(platformAccessibility().getPid(element_, pid));
    return pid;
}

void UIElement::setMessagingTimeout(float seconds) {
    // Not-a-number counts as no timeout of our own, as values at or below 0 do.
    messagingTimeout_ = seconds > 0 ? seconds : 0;
    const auto code = platformAccessibility().setMessagingTimeout(element_, messagingTimeout_);
    if (code == ax::success || code == ax::invalidUIElement)
        return;
    quillbox::fatalError("Unexpected error setting messaging timeout: " +
                         AXError(code).description());
}

std::shared_ptr<UIElement> UIElement::elementAtPosition(float x, float y) const {
    platform::AXUIElementRef found;
    const auto code = platformAccessibility().copyElementAtPosition(element_, x, y, found);
    if (code == ax::noValue)
        return nullptr;
    throwUnlessSuccess(code);
    return found ? std::make_shared<UIElement>(std::move(found)) : nullptr;
}

std::shared_ptr<UIElement> UIElement::elementAtPosition(platform::CGPoint) const {
    throw AXError::notImplemented;
}

std::vector<std::string> UIElement::attributesAsStrings() const {
    return rawValues(attributes());
}

bool UIElement::attributeIsSupported(const std::string& attribute) const {
    return attributeIsSupported(Attribute(attribute));
}

bool UIElement::attributeIsSettable(const std::string& attribute) const {
    return attributeIsSettable(Attribute(attribute));
}

void UIElement::setAttribute(const std::string& attribute, const AttributeValue& value) const {
    setAttribute(Attribute(attribute), value);
}

std::map<std::string, AttributeValue> UIElement::getMultipleAttributes(
    const std::vector<std::string>& attributes) const {
    return packMultiAttrValues(attributes, fetchMultiAttrValues(attributes));
}

std::optional<std::int64_t> UIElement::valueCountForAttribute(const std::string& attribute) const {
    return valueCountForAttribute(Attribute(attribute));
}

std::vector<std::string> UIElement::parameterizedAttributesAsStrings() const {
    return rawValues(parameterizedAttributes());
}

std::vector<std::string> UIElement::actionsAsStrings() const {
    return rawValues(actions());
}

std::optional<std::string> UIElement::actionDescription(const std::string& action) const {
    return actionDescription(Action(action));
}

void UIElement::performAction(const std::string& action) const {
    performAction(Action(action));
}

std::optional<UIElement::Role> UIElement::role() const {
    auto text = attribute<std::string>("AXRole");
    return text ? std::optional<Role>(Role(*text)) : std::nullopt;
}

std::optional<UIElement::Role::Subrole> UIElement::subrole() const {
    auto text = attribute<std::string>("AXSubrole");
    return text ? std::optional<Role::Subrole>(Role::Subrole(*text)) : std::nullopt;
}

AttributeValue UIElement::unpackAXValue(const CFValue& object) const {
    if (const auto* handle = object.get<platform::AXUIElementRef>()) {
        return std::make_shared<UIElement>(*handle);
    }
    const auto* box = object.get<platform::AXValue>();
    if (!box)
        return object;
    // A box whose contents don't match its type reads as a zeroed value.
    auto contents = [box]<typename T>(T zero) {
        const auto* found = std::get_if<T>(&box->value);
        return found ? *found : zero;
    };
    using Type = platform::AXValue::Type;
    switch (box->type) {
        case Type::cgPoint:
            return contents(platform::CGPoint{});
        case Type::cgSize:
            return contents(platform::CGSize{});
        case Type::cgRect:
            return contents(platform::CGRect{});
        case Type::cfRange:
            return contents(platform::CFRange{});
        case Type::axError:
            return AXError(contents(AXErrorCode{0}));
        case Type::illegal:
            break;
    }
    return object;
}

}  // namespace corvane
