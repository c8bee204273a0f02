#include "accessibility/SystemWideElement.h"

#include "platform/Platform.h"

namespace corvane {

std::shared_ptr<UIElement> SystemWideElement::elementAtPosition(float x, float y) const {
    return UIElement::elementAtPosition(x, y);
}

const std::shared_ptr<SystemWideElement>& systemWideElement() {
    static const auto* const shared = new std::shared_ptr<SystemWideElement>(
        std::make_shared<SystemWideElement>(platform::accessibility().createSystemWide()));
    return *shared;
}

bool checkIsProcessTrusted(bool prompt) {
    return platform::accessibility().isProcessTrustedWithOptions(
        {{"AXTrustedCheckOptionPrompt", platform::CFValue(prompt)}});
}

}  // namespace corvane
