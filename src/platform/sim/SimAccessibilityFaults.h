#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/Accessibility.h"

namespace platform::sim {

// The calls of the accessibility interface that a fault can be put on.
enum class SimAXCall {
    any,  // every call below
    copyAttributeNames,
    copyAttributeValue,
    copyAttributeValues,
    getAttributeValueCount,
    isAttributeSettable,
    setAttributeValue,
    copyMultipleAttributeValues,
    copyParameterizedAttributeNames,
    copyParameterizedAttributeValue,
    copyActionNames,
    copyActionDescription,
    performAction,
    getPid,
    setMessagingTimeout,
    copyElementAtPosition,
    observerCreate,
    observerAddNotification,
    observerRemoveNotification,
};

// What a faulty call answers: a code, and what it leaves in its
// out-parameter (nothing: it stays empty). A success with an output of the
// wrong kind is a value of the wrong type; a success with no output is a
// null out-parameter.
struct SimAXFault {
    AXErrorCode code = axError::success;
    std::optional<CFValue> output;

    static SimAXFault error(AXErrorCode code) { return {code, std::nullopt}; }
    static SimAXFault errorWithOutput(AXErrorCode code, CFValue output) {
        return {code, std::move(output)};
    }
    static SimAXFault value(CFValue output) { return {axError::success, std::move(output)}; }
    static SimAXFault nullOutput() { return {axError::success, std::nullopt}; }
};

// The faults put on calls, matched by call, element and name (attribute,
// action or notification). The latest matching fault wins.
class SimAXFaults {
  public:
    // A null element or no name matches any; times < 0 means for good.
    void add(SimAXCall call, SimAXFault fault, AXUIElementRef element,
             std::optional<std::string> name, int times);
    void clear() { rules_.clear(); }

    // The fault for this call, used up by one if it has a count.
    std::optional<SimAXFault> take(SimAXCall call, const AXUIElementRef& element,
                                   const std::string& name = {});

  private:
    struct Rule {
        SimAXCall call;
        SimAXFault fault;
        AXUIElementRef element;
        std::optional<std::string> name;
        int remaining;
    };
    std::vector<Rule> rules_;
};

}  // namespace platform::sim
