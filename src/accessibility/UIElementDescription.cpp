#include "accessibility/UIElement.h"
#include "platform/Platform.h"

// How an element prints itself in diagnostics.

namespace corvane {

namespace {

std::string bundleIdentifierOf(std::optional<pid_t> pid) {
    auto* workspace = platform::installed().workspace;
    if (!pid || !workspace)
        return "";
    auto application = workspace->runningApplicationWithProcessIdentifier(*pid);
    if (!application)
        return "";
    return application->bundleIdentifier().value_or("");
}

}  // namespace

std::string UIElement::description() const {
    std::optional<pid_t> processID;
    try {
        processID = pid();
    } catch (const AXError&) {
    }

    std::string roleText;
    std::optional<std::string> detail;
    try {
        auto roleName = attribute<std::string>("AXRole");
        roleText = roleName.value_or("UIElementNoRole");
        if (roleName == "AXApplication") {
            detail = bundleIdentifierOf(processID);
        } else if (roleName == "AXWindow") {
            try {
                detail = attribute<std::string>("AXTitle").value_or("");
            } catch (const AXError&) {
                detail = "";
            }
        }
    } catch (const AXError& error) {
        roleText = error == AXError::invalidUIElement ? "InvalidUIElement" : "UnknownUIElement";
    }

    if (!detail)
        detail = element_ ? element_->description() : "<null>";
    const auto pidText = processID ? std::to_string(*processID) : "??";
    return "<" + roleText + " \"" + *detail + "\" (pid=" + pidText + ")>";
}

std::string UIElement::inspect() const {
    std::string text = "[";
    bool first = true;
    for (const auto& [attribute, value] : getMultipleAttributes(attributes())) {
        if (!first)
            text += ", ";
        first = false;
        text += "\"" + attribute.rawValue + "\": " + describe(value);
    }
    return text + (first ? ":]" : "]");
}

}  // namespace corvane
