#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/CFValue.h"

namespace platform {

// Return codes of the accessibility interface.
namespace axError {
inline constexpr AXErrorCode success = 0;
inline constexpr AXErrorCode failure = -25200;
inline constexpr AXErrorCode illegalArgument = -25201;
inline constexpr AXErrorCode invalidUIElement = -25202;
inline constexpr AXErrorCode invalidUIElementObserver = -25203;
inline constexpr AXErrorCode cannotComplete = -25204;
inline constexpr AXErrorCode attributeUnsupported = -25205;
inline constexpr AXErrorCode actionUnsupported = -25206;
inline constexpr AXErrorCode notificationUnsupported = -25207;
inline constexpr AXErrorCode notImplemented = -25208;
inline constexpr AXErrorCode notificationAlreadyRegistered = -25209;
inline constexpr AXErrorCode notificationNotRegistered = -25210;
inline constexpr AXErrorCode apiDisabled = -25211;
inline constexpr AXErrorCode noValue = -25212;
inline constexpr AXErrorCode parameterizedAttributeUnsupported = -25213;
inline constexpr AXErrorCode notEnoughPrecision = -25214;
}  // namespace axError

// A platform observer of one process's accessibility notifications.
class AXObserverHandle {
  public:
    virtual ~AXObserverHandle() = default;
};
using AXObserverRef = std::shared_ptr<AXObserverHandle>;

// The callbacks the platform calls for a notification. refcon is the user
// data given when the notification was added.
using AXObserverCallback = void (*)(const AXObserverRef& observer, const AXUIElementRef& element,
                                    const std::string& notification, void* refcon);
using AXObserverCallbackWithInfo = void (*)(const AXObserverRef& observer,
                                            const AXUIElementRef& element,
                                            const std::string& notification,
                                            const CFValue::Dictionary& info, void* refcon);

// The accessibility interface of other applications. Every operation answers
// with the platform's code; out-parameters stay empty when the platform
// wrote nothing.
class Accessibility {
  public:
    virtual ~Accessibility() = default;

    virtual AXUIElementRef createApplication(pid_t pid) = 0;
    virtual AXUIElementRef createSystemWide() = 0;

    virtual AXErrorCode copyAttributeNames(const AXUIElementRef& element,
                                           std::optional<CFValue>& names) = 0;
    virtual AXErrorCode copyAttributeValue(const AXUIElementRef& element,
                                           const std::string& attribute,
                                           std::optional<CFValue>& value) = 0;
    virtual AXErrorCode copyAttributeValues(const AXUIElementRef& element,
                                            const std::string& attribute, std::int64_t index,
                                            std::int64_t maxValues,
                                            std::optional<CFValue>& values) = 0;
    virtual AXErrorCode getAttributeValueCount(const AXUIElementRef& element,
                                               const std::string& attribute,
                                               std::int64_t& count) = 0;
    virtual AXErrorCode isAttributeSettable(const AXUIElementRef& element,
                                            const std::string& attribute, bool& settable) = 0;
    virtual AXErrorCode setAttributeValue(const AXUIElementRef& element,
                                          const std::string& attribute, const CFValue& value) = 0;
    virtual AXErrorCode copyMultipleAttributeValues(const AXUIElementRef& element,
                                                    const std::vector<std::string>& attributes,
                                                    std::uint32_t options,
                                                    std::optional<CFValue>& values) = 0;
    virtual AXErrorCode copyParameterizedAttributeNames(const AXUIElementRef& element,
                                                        std::optional<CFValue>& names) = 0;
    virtual AXErrorCode copyParameterizedAttributeValue(const AXUIElementRef& element,
                                                        const std::string& attribute,
                                                        const CFValue& parameter,
                                                        std::optional<CFValue>& value) = 0;
    virtual AXErrorCode copyActionNames(const AXUIElementRef& element,
                                        std::optional<CFValue>& names) = 0;
    virtual AXErrorCode copyActionDescription(const AXUIElementRef& element,
                                              const std::string& action,
                                              std::optional<CFValue>& description) = 0;
    virtual AXErrorCode performAction(const AXUIElementRef& element, const std::string& action) = 0;
    virtual AXErrorCode getPid(const AXUIElementRef& element, pid_t& pid) = 0;
    virtual AXErrorCode setMessagingTimeout(const AXUIElementRef& element, float seconds) = 0;
    virtual AXErrorCode copyElementAtPosition(const AXUIElementRef& application, float x, float y,
                                              AXUIElementRef& element) = 0;

    // The process trust test; options may ask the platform to prompt
    // ("AXTrustedCheckOptionPrompt").
    virtual bool isProcessTrustedWithOptions(const CFValue::Dictionary& options) = 0;

    virtual AXErrorCode observerCreate(pid_t pid, AXObserverCallback callback,
                                       AXObserverRef& observer) = 0;
    virtual AXErrorCode observerCreateWithInfoCallback(pid_t pid,
                                                       AXObserverCallbackWithInfo callback,
                                                       AXObserverRef& observer) = 0;
    virtual AXErrorCode observerAddNotification(const AXObserverRef& observer,
                                                const AXUIElementRef& element,
                                                const std::string& notification, void* refcon) = 0;
    virtual AXErrorCode observerRemoveNotification(const AXObserverRef& observer,
                                                   const AXUIElementRef& element,
                                                   const std::string& notification) = 0;
    // While an observer's source is on the main loop its callbacks are
    // delivered there; removing the source stops them.
    virtual void runLoopAddSource(const AXObserverRef& observer) = 0;
    virtual void runLoopRemoveSource(const AXObserverRef& observer) = 0;
};

}  // namespace platform
