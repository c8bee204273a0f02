#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "accessibility/Application.h"

namespace corvane {

// An element known to be a window. The quiet properties never throw: a row
// that shows a window keeps drawing with their fallbacks while the window
// goes away. The get... accessors throw, for code that must tell an absent
// value from a failure.
class Application::Window : public UIElement {
  public:
    explicit Window(platform::AXUIElementRef element) : UIElement(std::move(element)) {}

    // Nothing unless the element reads as a window ("AXWindow").
    static std::shared_ptr<Window> fromElement(const UIElement& element);

    // For identified lists: two objects on the same window share it.
    std::size_t id() const { return platform::CFHash(element()); }

    bool isMain() const;
    bool isFocused() const;
    bool isMinimized() const;
    bool isModal() const;
    bool isFullScreen() const;
    std::shared_ptr<UIElement> closeButton() const;
    std::shared_ptr<UIElement> fullScreenButton() const;
    std::shared_ptr<UIElement> minimizeButton() const;
    std::shared_ptr<UIElement> zoomButton() const;
    std::optional<std::string> title() const;
    std::vector<platform::CFValue> sections() const;
    std::optional<std::string> identifier() const;
    std::optional<platform::CGPoint> activationPoint() const;
    std::optional<platform::CGPoint> position() const;
    std::optional<platform::CGRect> frame() const;
    // Declared as text, which the platform's size never is: always nothing.
    // Read frame() for the size.
    std::optional<std::string> size() const;

    // "Unknown" when the window has no title.
    std::string getTitle() const;
    std::shared_ptr<Application> getParent() const;
    std::vector<platform::CFValue> getSections() const;
    std::vector<platform::CFValue> getChildren() const;
    std::vector<platform::CFValue> getChildrenInNavOrder() const;
    std::optional<platform::CFValue> getProxy() const;

  private:
    template <typename T>
    std::optional<T> quietAttribute(const char* attribute) const noexcept;
};

}  // namespace corvane
