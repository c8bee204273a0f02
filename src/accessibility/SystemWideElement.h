#pragma once

#include <memory>

#include "accessibility/UIElement.h"

namespace corvane {

// The process-wide root element. Its messaging timeout is the one for every
// element of this process.
class SystemWideElement : public UIElement {
  public:
    explicit SystemWideElement(platform::AXUIElementRef element) : UIElement(std::move(element)) {}

    using UIElement::elementAtPosition;
    std::shared_ptr<UIElement> elementAtPosition(float x, float y) const override;
};

// The one shared system-wide element, made on first use and never released.
const std::shared_ptr<SystemWideElement>& systemWideElement();

// Whether this process may use the accessibility interface; with the prompt
// flag the platform may ask the user.
bool checkIsProcessTrusted(bool prompt);

}  // namespace corvane
