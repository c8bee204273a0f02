#include "accessibility/Window.h"

namespace corvane {

using Window = Application::Window;

std::shared_ptr<Window> Window::fromElement(const UIElement& element) {
    try {
        if (element.attribute<std::string>(Attribute::role) != Role::window.rawValue) {
            return nullptr;
        }
    } catch (const AXError&) {
        return nullptr;
    }
    return std::make_shared<Window>(element.element());
}

template <typename T>
std::optional<T> Window::quietAttribute(const char* attribute) const noexcept {
    try {
        auto raw = rawAttribute(Attribute(attribute));
        if (!raw)
            return std::nullopt;
        return castRead<T>(*raw);
    } catch (const AXError&) {
        return std::nullopt;
    }
}

bool Window::isMain() const {
    return quietAttribute<bool>("AXMain").value_or(false);
}
bool Window::isFocused() const {
    return quietAttribute<bool>("AXFocused").value_or(false);
}
bool Window::isMinimized() const {
    return quietAttribute<bool>("AXMinimized").value_or(false);
}
bool Window::isModal() const {
    return quietAttribute<bool>("AXModal").value_or(false);
}
bool Window::isFullScreen() const {
    return quietAttribute<bool>("AXFullScreen").value_or(false);
}

std::shared_ptr<UIElement> Window::closeButton() const {
    return quietAttribute<std::shared_ptr<UIElement>>("AXCloseButton").value_or(nullptr);
}
std::shared_ptr<UIElement> Window::fullScreenButton() const {
    return quietAttribute<std::shared_ptr<UIElement>>("AXFullScreenButton").value_or(nullptr);
}
std::shared_ptr<UIElement> Window::minimizeButton() const {
    return quietAttribute<std::shared_ptr<UIElement>>("AXMinimizeButton").value_or(nullptr);
}
std::shared_ptr<UIElement> Window::zoomButton() const {
    return quietAttribute<std::shared_ptr<UIElement>>("AXZoomButton").value_or(nullptr);
}

std::optional<std::string> Window::title() const {
    return quietAttribute<std::string>("AXTitle");
}
std::vector<platform::CFValue> Window::sections() const {
    return quietAttribute<platform::CFValue::Array>("AXSections")
        .value_or(platform::CFValue::Array{});
}
std::optional<std::string> Window::identifier() const {
    return quietAttribute<std::string>("AXIdentifier");
}
std::optional<platform::CGPoint> Window::activationPoint() const {
    return quietAttribute<platform::CGPoint>("AXActivationPoint");
}
std::optional<platform::CGPoint> Window::position() const {
    return quietAttribute<platform::CGPoint>("AXPosition");
}
std::optional<platform::CGRect> Window::frame() const {
    return quietAttribute<platform::CGRect>("AXFrame");
}
std::optional<std::string> Window::size() const {
    return quietAttribute<std::string>("AXSize");
}

std::string Window::getTitle() const {
    return attribute<std::string>(Attribute::title).value_or("Unknown");
}

std::shared_ptr<Application> Window::getParent() const {
    auto parent = attribute<std::shared_ptr<UIElement>>(Attribute::parent);
    if (!parent || !*parent)
        return nullptr;
    return std::make_shared<Application>((*parent)->element());
}

std::vector<platform::CFValue> Window::getSections() const {
    return attribute<platform::CFValue::Array>("AXSections").value_or(platform::CFValue::Array{});
}

std::vector<platform::CFValue> Window::getChildren() const {
    return attribute<platform::CFValue::Array>(Attribute::children)
        .value_or(platform::CFValue::Array{});
}

std::vector<platform::CFValue> Window::getChildrenInNavOrder() const {
    return attribute<platform::CFValue::Array>(Attribute::childrenInNavigationOrder)
        .value_or(platform::CFValue::Array{});
}

std::optional<platform::CFValue> Window::getProxy() const {
    return attribute<platform::CFValue>(Attribute::proxy);
}

}  // namespace corvane
