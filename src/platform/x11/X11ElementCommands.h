#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/Accessibility.h"
#include "platform/x11/X11Element.h"
#include "platform/x11/X11WindowActions.h"
#include "platform/x11/X11WindowMirror.h"

namespace platform::x11 {

// The writes and actions on elements, turned into requests to the window
// manager. They answer at once; the mirror shows the outcome when the window
// manager has acted and said so.
class X11ElementCommands {
  public:
    X11ElementCommands(X11Connection& connection, const X11WindowMirror& mirror);

    // For a live element and a settable attribute.
    AXErrorCode set(const X11ElementKey& key, const std::string& attribute, const CFValue& value);

    std::vector<std::string> actionNames(X11ElementKind kind) const;
    AXErrorCode describe(X11ElementKind kind, const std::string& action,
                         std::optional<CFValue>& description) const;
    // For a live element.
    AXErrorCode perform(const X11ElementKey& key, const std::string& action);

  private:
    AXErrorCode bringForward(pid_t pid);
    AXErrorCode press(const X11ElementKey& key);

    const X11WindowMirror& mirror_;
    X11WindowActions actions_;
};

}  // namespace platform::x11
