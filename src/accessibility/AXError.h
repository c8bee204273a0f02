#pragma once

#include <exception>
#include <functional>
#include <string>
#include <string_view>

#include "platform/Accessibility.h"

namespace corvane {

// The platform's accessibility return code, thrown as it stands by every
// failing operation of this library.
struct AXError : std::exception {
    static constexpr std::string_view errorDomain = "ApplicationServices.AXError";

    platform::AXErrorCode code = platform::axError::success;

    explicit AXError(platform::AXErrorCode rawCode) noexcept : code(rawCode) {}

    // "AXError.CannotComplete"; "AXError.<Unknown>" outside the known codes.
    std::string description() const;
    // "AXError.cannotComplete"; outside the known codes the platform's own
    // form, which ends with the number and no closing parenthesis.
    std::string debugDescription() const;
    const char* what() const noexcept override;

    friend bool operator==(const AXError& a, const AXError& b) { return a.code == b.code; }

    static const AXError success;
    static const AXError failure;
    static const AXError illegalArgument;
    static const AXError invalidUIElement;
    static const AXError invalidUIElementObserver;
    static const AXError cannotComplete;
    static const AXError attributeUnsupported;
    static const AXError actionUnsupported;
    static const AXError notificationUnsupported;
    static const AXError notImplemented;
    static const AXError notificationAlreadyRegistered;
    static const AXError notificationNotRegistered;
    static const AXError apiDisabled;
    static const AXError noValue;
    static const AXError parameterizedAttributeUnsupported;
    static const AXError notEnoughPrecision;
};

// Defined here rather than in a source file so that constants of other files
// that are built from these never see them uninitialised.
inline const AXError AXError::success{platform::axError::success};
inline const AXError AXError::failure{platform::axError::failure};
inline const AXError AXError::illegalArgument{platform::axError::illegalArgument};
inline const AXError AXError::invalidUIElement{platform::axError::invalidUIElement};
inline const AXError AXError::invalidUIElementObserver{platform::axError::invalidUIElementObserver};
inline const AXError AXError::cannotComplete{platform::axError::cannotComplete};
inline const AXError AXError::attributeUnsupported{platform::axError::attributeUnsupported};
inline const AXError AXError::actionUnsupported{platform::axError::actionUnsupported};
inline const AXError AXError::notificationUnsupported{platform::axError::notificationUnsupported};
inline const AXError AXError::notImplemented{platform::axError::notImplemented};
inline const AXError AXError::notificationAlreadyRegistered{
    platform::axError::notificationAlreadyRegistered};
inline const AXError AXError::notificationNotRegistered{
    platform::axError::notificationNotRegistered};
inline const AXError AXError::apiDisabled{platform::axError::apiDisabled};
inline const AXError AXError::noValue{platform::axError::noValue};
inline const AXError AXError::parameterizedAttributeUnsupported{
    platform::axError::parameterizedAttributeUnsupported};
inline const AXError AXError::notEnoughPrecision{platform::axError::notEnoughPrecision};

}  // namespace corvane

template <>
struct std::hash<corvane::AXError> {
    std::size_t operator()(const corvane::AXError& error) const noexcept {
        return std::hash<platform::AXErrorCode>{}(error.code);
    }
};
