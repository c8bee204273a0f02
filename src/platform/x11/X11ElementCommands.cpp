#include "platform/x11/X11ElementCommands.h"

namespace platform::x11 {

X11ElementCommands::X11ElementCommands(X11Connection& connection, const X11WindowMirror& mirror)
    : mirror_(mirror), actions_(connection) {}

AXErrorCode X11ElementCommands::set(const X11ElementKey& key, const std::string& attribute,
                                    const CFValue& value) {
    const bool* flag = value.get<bool>();
    if (!flag)
        return axError::illegalArgument;
    if (key.kind == X11ElementKind::application && attribute == "AXFrontmost") {
        // Nothing on X11 sends an application to the back; like the
        // platform, we accept the request and leave things as they are.
        return *flag ? bringForward(key.pid) : axError::success;
    }
    if (key.kind != X11ElementKind::window)
        return axError::attributeUnsupported;
    const auto* state = mirror_.window(key.window);
    if (attribute == "AXMinimized") {
        // Asking again for what already is would, when restoring, also
        // activate the window; so only real changes go out.
        if (*flag && !state->hidden)
            actions_.iconify(key.window);
        if (!*flag && state->hidden)
            actions_.activate(key.window);
        return axError::success;
    }
    if (attribute == "AXFullScreen") {
        actions_.changeFullScreen(
            key.window, *flag ? X11WindowActions::Change::add : X11WindowActions::Change::remove);
        return axError::success;
    }
    return axError::attributeUnsupported;
}

std::vector<std::string> X11ElementCommands::actionNames(X11ElementKind kind) const {
    switch (kind) {
        case X11ElementKind::window:
            return {"AXRaise"};
        case X11ElementKind::button:
            return {"AXPress"};
        case X11ElementKind::application:
        case X11ElementKind::systemWide:
            return {};
    }
    return {};
}

AXErrorCode X11ElementCommands::describe(X11ElementKind kind, const std::string& action,
                                         std::optional<CFValue>& description) const {
    if (kind == X11ElementKind::window && action == "AXRaise") {
        description = CFValue("raise");
    } else if (kind == X11ElementKind::button && action == "AXPress") {
        description = CFValue("press");
    } else {
        return axError::actionUnsupported;
    }
    return axError::success;
}

AXErrorCode X11ElementCommands::perform(const X11ElementKey& key, const std::string& action) {
    if (key.kind == X11ElementKind::window && action == "AXRaise") {
        actions_.activate(key.window);
        return axError::success;
    }
    if (key.kind == X11ElementKind::button && action == "AXPress")
        return press(key);
    return axError::actionUnsupported;
}

AXErrorCode X11ElementCommands::bringForward(pid_t pid) {
    auto window = mirror_.mainWindowOf(pid);
    if (!window) {
        // With every window minimised, the first of them stands for the
        // application.
        const auto windows = mirror_.windowsOf(pid);
        if (windows.empty())
            return axError::cannotComplete;
        window = windows.front();
    }
    actions_.activate(*window);
    return axError::success;
}

AXErrorCode X11ElementCommands::press(const X11ElementKey& key) {
    switch (key.button) {
        case X11WindowButton::close:
            actions_.close(key.window);
            break;
        case X11WindowButton::minimize:
            actions_.iconify(key.window);
            break;
        case X11WindowButton::zoom:
            actions_.changeFullScreen(key.window, X11WindowActions::Change::toggle);
            break;
    }
    return axError::success;
}

}  // namespace platform::x11
