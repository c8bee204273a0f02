#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/Geometry.h"

namespace platform {

using WindowStyleMask = std::uint64_t;

// Window style bits in the platform's numbering.
namespace windowStyle {
inline constexpr WindowStyleMask borderless = 0;
inline constexpr WindowStyleMask titled = 1;
inline constexpr WindowStyleMask closable = 2;
inline constexpr WindowStyleMask miniaturizable = 4;
inline constexpr WindowStyleMask resizable = 8;
inline constexpr WindowStyleMask utilityWindow = 0x10;
inline constexpr WindowStyleMask nonactivatingPanel = 0x80;
inline constexpr WindowStyleMask fullSizeContentView = 0x1000;
inline constexpr WindowStyleMask fullScreen = 0x4000;
// What a window or panel made with the plain initialiser starts with.
inline constexpr WindowStyleMask defaultMask = titled | closable | miniaturizable | resizable;
}  // namespace windowStyle

using WindowLevel = int;

namespace windowLevel {
inline constexpr WindowLevel normal = 0;
inline constexpr WindowLevel floating = 3;
}  // namespace windowLevel

class Window;

// Told when a window is about to close. The window only refers to its
// delegate; the delegate's owner keeps it alive.
class WindowDelegate {
  public:
    virtual ~WindowDelegate() = default;
    // window is null when the close notification came without a window.
    virtual void windowWillClose(Window* window) = 0;
};

// The toolkit's content of a window, built by the view layer from a model.
// Opaque to the core.
class ContentView {
  public:
    virtual ~ContentView() = default;
};

// One of our own windows or panels.
class Window {
  public:
    virtual ~Window() = default;

    virtual std::string title() const = 0;
    virtual void setTitle(const std::string& title) = 0;

    virtual WindowStyleMask styleMask() const = 0;
    virtual void setStyleMask(WindowStyleMask mask) = 0;
    virtual WindowLevel level() const = 0;
    virtual void setLevel(WindowLevel level) = 0;
    virtual bool hidesOnDeactivate() const = 0;
    virtual void setHidesOnDeactivate(bool hides) = 0;
    // Panels only: the panel takes keyboard focus only when a control in it
    // needs it.
    virtual bool becomesKeyOnlyIfNeeded() const = 0;
    virtual void setBecomesKeyOnlyIfNeeded(bool value) = 0;
    virtual bool titlebarAppearsTransparent() const = 0;
    virtual void setTitlebarAppearsTransparent(bool value) = 0;

    // Bottom-left screen points. The size follows the content.
    virtual CGRect frame() const = 0;
    virtual void setFrameOrigin(CGPoint origin) = 0;

    virtual double alphaValue() const = 0;
    virtual void setAlphaValue(double alpha) = 0;

    virtual bool isVisible() const = 0;
    virtual void makeKeyAndOrderFront() = 0;
    virtual void orderFront() = 0;
    // Hides the window after telling its delegate; closing a closed window
    // does nothing.
    virtual void close() = 0;

    virtual void setDelegate(WindowDelegate* delegate) = 0;
    virtual WindowDelegate* delegate() const = 0;

    virtual void setContentView(std::shared_ptr<ContentView> view) = 0;
};

// Makes our windows. The toolkit half of a backend implements it.
class Toolkit {
  public:
    virtual ~Toolkit() = default;
    // A floating panel as made by the plain initialiser.
    virtual std::shared_ptr<Window> makePanel() = 0;
    // An ordinary window with the given style.
    virtual std::shared_ptr<Window> makeWindow(WindowStyleMask styleMask) = 0;
};

}  // namespace platform
