#include "accessibility/AXError.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

struct KnownCode {
    platform::AXErrorCode code;
    const char* description;
    const char* debugDescription;
};

namespace ax = platform::axError;

constexpr std::array<KnownCode, 16> knownCodes{{
    {ax::success, "AXError.Success", "AXError.success"},
    {ax::failure, "AXError.Failure", "AXError.failure"},
    {ax::illegalArgument, "AXError.IllegalArgument", "AXError.illegalArgument"},
    {ax::invalidUIElement, "AXError.InvalidUIElement", "AXError.invalidUIElement"},
    {ax::invalidUIElementObserver, "AXError.InvalidUIElementObserver",
     "AXError.invalidUIElementObserver"},
    {ax::cannotComplete, "AXError.CannotComplete", "AXError.cannotComplete"},
    {ax::attributeUnsupported, "AXError.AttributeUnsupported", "AXError.attributeUnsupported"},
    {ax::actionUnsupported, "AXError.ActionUnsupported", "AXError.actionUnsupported"},
    {ax::notificationUnsupported, "AXError.NotificationUnsupported",
     "AXError.notificationUnsupported"},
    {ax::notImplemented, "AXError.NotImplemented", "AXError.notImplemented"},
    {ax::notificationAlreadyRegistered, "AXError.NotificationAlreadyRegistered",
     "AXError.notificationAlreadyRegistered"},
    {ax::notificationNotRegistered, "AXError.NotificationNotRegistered",
     "AXError.notificationNotRegistered"},
    {ax::apiDisabled, "AXError.APIDisabled", "AXError.apiDisabled"},
    {ax::noValue, "AXError.NoValue", "AXError.noValue"},
    {ax::parameterizedAttributeUnsupported, "AXError.ParameterizedAttributeUnsupported",
     "AXError.parameterizedAttributeUnsupported"},
    {ax::notEnoughPrecision, "AXError.NotEnoughPrecision", "AXError.notEnoughPrecision"},
}};

constexpr const char* unknownDescription = "AXError.<Unknown>";

const KnownCode* find(platform::AXErrorCode code) {
    auto it = std::find_if(knownCodes.begin(), knownCodes.end(),
                           [code](const KnownCode& known) { return known.code == code; });
    return it == knownCodes.end() ? nullptr : &*it;
}

}  // namespace

std::string AXError::description() const {
    return what();
}

std::string AXError::debugDescription() const {
    if (const auto* known = find(code))
        return known->debugDescription;
    return "AXError (Unknown error - " + std::to_string(code);
}

const char* AXError::what() const noexcept {
    const auto* known = find(code);
    return known ? known->description : unknownDescription;
}

}  // namespace corvane
