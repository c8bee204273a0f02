#include "platform/x11/X11Element.h"

#include <cstdio>
#include <functional>

namespace platform::x11 {

namespace {

const char* buttonName(X11WindowButton button) {
    switch (button) {
        case X11WindowButton::close:
            return "close";
        case X11WindowButton::minimize:
            return "minimize";
        case X11WindowButton::zoom:
            return "zoom";
    }
    return "?";
}

}  // namespace

bool operator==(const X11ElementKey& a, const X11ElementKey& b) {
    if (a.kind != b.kind)
        return false;
    switch (a.kind) {
        case X11ElementKind::application:
            return a.pid == b.pid;
        case X11ElementKind::window:
            return a.window == b.window;
        case X11ElementKind::button:
            return a.window == b.window && a.button == b.button;
        case X11ElementKind::systemWide:
            return true;
    }
    return false;
}

std::size_t X11ElementKey::hash() const {
    const auto kindBits = static_cast<std::size_t>(kind);
    switch (kind) {
        case X11ElementKind::application:
            return kindBits ^ (std::hash<pid_t>{}(pid) << 2);
        case X11ElementKind::window:
            return kindBits ^ (std::hash<xcb_window_t>{}(window) << 2);
        case X11ElementKind::button:
            return kindBits ^ (std::hash<xcb_window_t>{}(window) << 4) ^
                   (static_cast<std::size_t>(button) << 2);
        case X11ElementKind::systemWide:
            return kindBits;
    }
    return kindBits;
}

AXUIElementRef X11Element::make(X11ElementKey key, pid_t describedPid) {
    return std::make_shared<const X11Element>(key, describedPid);
}

const X11Element* X11Element::from(const AXUIElementRef& handle) {
    return dynamic_cast<const X11Element*>(handle.get());
}

bool X11Element::isEqual(const AXUIElementHandle& other) const {
    const auto* element = dynamic_cast<const X11Element*>(&other);
    return element && element->key_ == key_;
}

std::string X11Element::description() const {
    char text[96];
    switch (key_.kind) {
        case X11ElementKind::application:
            std::snprintf(text, sizeof text, "<AXUIElement application> {pid=%d}", key_.pid);
            break;
        case X11ElementKind::window:
            std::snprintf(text, sizeof text, "<AXUIElement window 0x%x> {pid=%d}", key_.window,
                          describedPid_);
            break;
        case X11ElementKind::button:
            std::snprintf(text, sizeof text, "<AXUIElement %s button of 0x%x> {pid=%d}",
                          buttonName(key_.button), key_.window, describedPid_);
            break;
        case X11ElementKind::systemWide:
            std::snprintf(text, sizeof text, "<AXUIElement system-wide>");
            break;
    }
    return text;
}

}  // namespace platform::x11
