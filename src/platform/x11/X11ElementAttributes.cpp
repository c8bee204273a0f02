#include "platform/x11/X11ElementAttributes.h"

#include <signal.h>

#include <algorithm>
#include <cerrno>
#include <fstream>

namespace platform::x11 {

namespace {

const std::vector<std::string> applicationAttributes = {
    "AXRole", "AXTitle", "AXWindows", "AXMainWindow", "AXFocusedWindow", "AXFrontmost"};
const std::vector<std::string> windowAttributes = {
    "AXRole",    "AXSubrole",     "AXTitle",          "AXParent",    "AXMain",
    "AXFocused", "AXMinimized",   "AXFullScreen",     "AXPosition",  "AXSize",
    "AXFrame",   "AXCloseButton", "AXMinimizeButton", "AXZoomButton"};
const std::vector<std::string> buttonAttributes = {"AXRole", "AXSubrole", "AXEnabled", "AXParent"};
const std::vector<std::string> systemWideAttributes = {"AXRole", "AXFocusedApplication"};

bool processRuns(pid_t pid) {
    return pid > 0 && (::kill(pid, 0) == 0 || errno == EPERM);
}

std::optional<std::string> processName(pid_t pid) {
    std::ifstream comm("/proc/" + std::to_string(pid) + "/comm");
    std::string name;
    if (!std::getline(comm, name) || name.empty())
        return std::nullopt;
    return name;
}

AXErrorCode answer(std::optional<CFValue>& value, CFValue result) {
    value = std::move(result);
    return axError::success;
}

AXErrorCode answerIfAny(std::optional<CFValue>& value, std::optional<CFValue> result) {
    if (!result)
        return axError::noValue;
    value = std::move(*result);
    return axError::success;
}

std::optional<X11WindowButton> buttonNamed(const std::string& attribute) {
    if (attribute == "AXCloseButton")
        return X11WindowButton::close;
    if (attribute == "AXMinimizeButton")
        return X11WindowButton::minimize;
    if (attribute == "AXZoomButton")
        return X11WindowButton::zoom;
    return std::nullopt;
}

const char* buttonSubrole(X11WindowButton button) {
    switch (button) {
        case X11WindowButton::close:
            return "AXCloseButton";
        case X11WindowButton::minimize:
            return "AXMinimizeButton";
        case X11WindowButton::zoom:
            return "AXFullScreenButton";
    }
    return "AXUnknown";
}

}  // namespace

X11ElementAttributes::X11ElementAttributes(X11Connection& connection, const X11WindowMirror& mirror)
    : connection_(connection), mirror_(mirror) {}

bool X11ElementAttributes::isAlive(const X11ElementKey& key) const {
    switch (key.kind) {
        case X11ElementKind::application:
            return mirror_.hasWindowsOf(key.pid) || processRuns(key.pid);
        case X11ElementKind::window:
        case X11ElementKind::button:
            return mirror_.window(key.window) != nullptr;
        case X11ElementKind::systemWide:
            return true;
    }
    return false;
}

pid_t X11ElementAttributes::pidOf(const X11ElementKey& key) const {
    switch (key.kind) {
        case X11ElementKind::application:
            return key.pid;
        case X11ElementKind::window:
        case X11ElementKind::button: {
            const auto* state = mirror_.window(key.window);
            return state ? state->pid : 0;
        }
        case X11ElementKind::systemWide:
            return 0;
    }
    return 0;
}

std::vector<std::string> X11ElementAttributes::names(const X11ElementKind kind) const {
    switch (kind) {
        case X11ElementKind::application:
            return applicationAttributes;
        case X11ElementKind::window:
            return windowAttributes;
        case X11ElementKind::button:
            return buttonAttributes;
        case X11ElementKind::systemWide:
            return systemWideAttributes;
    }
    return {};
}

bool X11ElementAttributes::isSettable(const X11ElementKind kind,
                                      const std::string& attribute) const {
    switch (kind) {
        case X11ElementKind::application:
            return attribute == "AXFrontmost";
        case X11ElementKind::window:
            return attribute == "AXMinimized" || attribute == "AXFullScreen";
        case X11ElementKind::button:
        case X11ElementKind::systemWide:
            return false;
    }
    return false;
}

AXErrorCode X11ElementAttributes::read(const X11ElementKey& key, const std::string& attribute,
                                       std::optional<CFValue>& value) const {
    switch (key.kind) {
        case X11ElementKind::application:
            return readApplication(key.pid, attribute, value);
        case X11ElementKind::window:
            return readWindow(key.window, *mirror_.window(key.window), attribute, value);
        case X11ElementKind::button:
            return readButton(key, *mirror_.window(key.window), attribute, value);
        case X11ElementKind::systemWide:
            return readSystemWide(attribute, value);
    }
    return axError::attributeUnsupported;
}

AXUIElementRef X11ElementAttributes::windowElement(xcb_window_t window) const {
    const auto* state = mirror_.window(window);
    return X11Element::make(X11ElementKey::forWindow(window), state ? state->pid : 0);
}

AXUIElementRef X11ElementAttributes::applicationElement(pid_t pid) const {
    return X11Element::make(X11ElementKey::forApplication(pid), pid);
}

AXErrorCode X11ElementAttributes::readApplication(pid_t pid, const std::string& attribute,
                                                  std::optional<CFValue>& value) const {
    if (attribute == "AXRole")
        return answer(value, "AXApplication");
    if (attribute == "AXTitle") {
        auto name = processName(pid);
        return answerIfAny(value, name ? std::optional<CFValue>(*name) : std::nullopt);
    }
    if (attribute == "AXWindows") {
        CFValue::Array windows;
        for (auto window : mirror_.windowsOf(pid)) {
            windows.emplace_back(X11Element::make(X11ElementKey::forWindow(window), pid));
        }
        return answer(value, std::move(windows));
    }
    if (attribute == "AXMainWindow") {
        auto main = mirror_.mainWindowOf(pid);
        return answerIfAny(value,
                           main ? std::optional<CFValue>(windowElement(*main)) : std::nullopt);
    }
    const auto* active = mirror_.window(mirror_.activeWindow());
    const bool frontmost = active && active->pid == pid;
    if (attribute == "AXFocusedWindow") {
        return answerIfAny(value,
                           frontmost ? std::optional<CFValue>(windowElement(mirror_.activeWindow()))
                                     : std::nullopt);
    }
    if (attribute == "AXFrontmost")
        return answer(value, frontmost);
    return axError::attributeUnsupported;
}

AXErrorCode X11ElementAttributes::readWindow(xcb_window_t window, const X11WindowState& state,
                                             const std::string& attribute,
                                             std::optional<CFValue>& value) const {
    if (attribute == "AXRole")
        return answer(value, "AXWindow");
    if (attribute == "AXTitle") {
        const auto& title = state.title();
        return answerIfAny(value, title ? std::optional<CFValue>(*title) : std::nullopt);
    }
    if (attribute == "AXSubrole")
        return answer(value, subroleOf(state));
    if (attribute == "AXParent") {
        return answerIfAny(value, state.pid > 0
                                      ? std::optional<CFValue>(applicationElement(state.pid))
                                      : std::nullopt);
    }
    if (attribute == "AXMain")
        return answer(value, mirror_.mainWindowOf(state.pid) == window);
    if (attribute == "AXFocused")
        return answer(value, mirror_.activeWindow() == window);
    if (attribute == "AXMinimized")
        return answer(value, state.hidden);
    if (attribute == "AXFullScreen")
        return answer(value, state.fullScreen);
    if (attribute == "AXPosition")
        return answer(value, AXValue::point(frameOf(state).origin));
    if (attribute == "AXSize")
        return answer(value, AXValue::size(frameOf(state).size));
    if (attribute == "AXFrame")
        return answer(value, AXValue::rect(frameOf(state)));
    if (auto button = buttonNamed(attribute)) {
        return answer(value,
                      X11Element::make(X11ElementKey::forButton(window, *button), state.pid));
    }
    return axError::attributeUnsupported;
}

AXErrorCode X11ElementAttributes::readButton(const X11ElementKey& key, const X11WindowState& state,
                                             const std::string& attribute,
                                             std::optional<CFValue>& value) const {
    if (attribute == "AXRole")
        return answer(value, "AXButton");
    if (attribute == "AXSubrole")
        return answer(value, buttonSubrole(key.button));
    if (attribute == "AXParent")
        return answer(value, windowElement(key.window));
    if (attribute == "AXEnabled") {
        auto& ewmh = connection_.ewmh();
        switch (key.button) {
            case X11WindowButton::close:
                return answer(value, state.allows(ewmh._NET_WM_ACTION_CLOSE));
            case X11WindowButton::minimize:
                return answer(value, state.allows(ewmh._NET_WM_ACTION_MINIMIZE));
            case X11WindowButton::zoom:
                return answer(value, state.allows(ewmh._NET_WM_ACTION_FULLSCREEN));
        }
    }
    return axError::attributeUnsupported;
}

AXErrorCode X11ElementAttributes::readSystemWide(const std::string& attribute,
                                                 std::optional<CFValue>& value) const {
    if (attribute == "AXRole")
        return answer(value, "AXSystemWide");
    if (attribute == "AXFocusedApplication") {
        const auto* active = mirror_.window(mirror_.activeWindow());
        return answerIfAny(value, active && active->pid > 0
                                      ? std::optional<CFValue>(applicationElement(active->pid))
                                      : std::nullopt);
    }
    return axError::attributeUnsupported;
}

std::string X11ElementAttributes::subroleOf(const X11WindowState& state) const {
    auto& ewmh = connection_.ewmh();
    // The first type the window names that we know decides; a window that
    // names none is an ordinary one.
    for (auto type : state.types) {
        if (type == ewmh._NET_WM_WINDOW_TYPE_NORMAL)
            return "AXStandardWindow";
        if (type == ewmh._NET_WM_WINDOW_TYPE_DIALOG)
            return "AXDialog";
        if (type == ewmh._NET_WM_WINDOW_TYPE_UTILITY || type == ewmh._NET_WM_WINDOW_TYPE_TOOLBAR ||
            type == ewmh._NET_WM_WINDOW_TYPE_MENU || type == ewmh._NET_WM_WINDOW_TYPE_SPLASH) {
            return "AXFloatingWindow";
        }
        if (type == ewmh._NET_WM_WINDOW_TYPE_DOCK || type == ewmh._NET_WM_WINDOW_TYPE_DESKTOP) {
            return "AXSystemFloatingWindow";
        }
        if (type == ewmh._NET_WM_WINDOW_TYPE_NOTIFICATION)
            return "AXSystemDialog";
    }
    return state.types.empty() ? "AXStandardWindow" : "AXUnknown";
}

CGRect X11ElementAttributes::frameOf(const X11WindowState& state) const {
    // X counts down from the top of the screen; points count up from the bottom.
    const double bottom = mirror_.screenHeight() - (state.frameTop() + state.frameHeight());
    return CGRect{CGPoint{state.frameLeft(), bottom},
                  CGSize{state.frameWidth(), state.frameHeight()}};
}

}  // namespace platform::x11
