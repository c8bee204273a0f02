#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/Accessibility.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Element.h"
#include "platform/x11/X11WindowMirror.h"

namespace platform::x11 {

// Answers attribute questions about elements from the window mirror alone:
// no read goes to the X server.
class X11ElementAttributes {
  public:
    X11ElementAttributes(X11Connection& connection, const X11WindowMirror& mirror);

    // Whether the element still stands for something: a window still
    // managed, a process still running.
    bool isAlive(const X11ElementKey& key) const;
    // The process behind the element; zero for the whole desktop.
    pid_t pidOf(const X11ElementKey& key) const;

    std::vector<std::string> names(const X11ElementKind kind) const;
    bool isSettable(const X11ElementKind kind, const std::string& attribute) const;
    // Answers for a live element only; the caller checks liveness.
    AXErrorCode read(const X11ElementKey& key, const std::string& attribute,
                     std::optional<CFValue>& value) const;

    AXUIElementRef windowElement(xcb_window_t window) const;
    AXUIElementRef applicationElement(pid_t pid) const;

  private:
    AXErrorCode readApplication(pid_t pid, const std::string& attribute,
                                std::optional<CFValue>& value) const;
    AXErrorCode readWindow(xcb_window_t window, const X11WindowState& state,
                           const std::string& attribute, std::optional<CFValue>& value) const;
    AXErrorCode readButton(const X11ElementKey& key, const X11WindowState& state,
                           const std::string& attribute, std::optional<CFValue>& value) const;
    AXErrorCode readSystemWide(const std::string& attribute, std::optional<CFValue>& value) const;
    std::string subroleOf(const X11WindowState& state) const;
    CGRect frameOf(const X11WindowState& state) const;

    X11Connection& connection_;
    const X11WindowMirror& mirror_;
};

}  // namespace platform::x11
