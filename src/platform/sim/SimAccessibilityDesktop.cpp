#include <algorithm>
#include <stdexcept>

#include "platform/sim/SimAccessibility.h"
#include "platform/sim/SimWorkspace.h"

// The simulated applications: their windows and title-bar buttons, and what
// writes and actions do to them.

namespace platform::sim {

namespace ax = axError;

namespace {

const SimAXElementKey& keyOf(const AXUIElementRef& handle) {
    return dynamic_cast<const SimAXUIElement&>(*handle).key();
}

}  // namespace

bool SimAccessibility::flag(const Element& element, const std::string& attribute) {
    auto it = element.attributes.find(attribute);
    const auto* value =
        it != element.attributes.end() && it->second ? it->second->get<bool>() : nullptr;
    return value && *value;
}

std::optional<CGRect> SimAccessibility::frameOf(const Element& element) {
    auto it = element.attributes.find("AXFrame");
    if (it == element.attributes.end() || !it->second)
        return std::nullopt;
    const auto* box = it->second->get<AXValue>();
    const auto* rect = box ? std::get_if<CGRect>(&box->value) : nullptr;
    return rect ? std::optional<CGRect>(*rect) : std::nullopt;
}

bool SimAccessibility::isWindow(const SimAXElementKey& key) const {
    auto it = processes_.find(key.pid);
    if (it == processes_.end())
        return false;
    const auto& windows = it->second.windows;
    return std::find(windows.begin(), windows.end(), key.id) != windows.end();
}

AXUIElementRef SimAccessibility::addProcess(pid_t pid, std::string name) {
    ended_.erase(pid);
    if (auto it = elements_.find({pid, 0}); it != elements_.end())
        return it->second.handle;
    processes_[pid].name = name;
    auto& application = makeElement({pid, 0}, std::nullopt);
    application.attributes = {
        {"AXRole", CFValue("AXApplication")},  {"AXRoleDescription", CFValue("application")},
        {"AXTitle", CFValue(std::move(name))}, {"AXFrontmost", CFValue(false)},
        {"AXHidden", CFValue(false)},
    };
    application.settable = {"AXFrontmost", "AXHidden"};
    syncProcess(pid);
    return application.handle;
}

void SimAccessibility::endProcess(pid_t pid) {
    ended_.insert(pid);
    processes_.erase(pid);
    std::erase_if(elements_, [pid](const auto& entry) { return entry.first.pid == pid; });
}

AXUIElementRef SimAccessibility::addWindow(pid_t pid, SimWindowSetup setup) {
    if (!process(pid))
        addProcess(pid);
    const auto applicationHandle = elements_.at({pid, 0}).handle;
    const SimAXElementKey key{pid, ++lastElementId_};
    auto& window = makeElement(key, SimAXElementKey{pid, 0});
    window.attributes = {
        {"AXRole", CFValue(setup.role)},
        {"AXSubrole", CFValue(setup.subrole)},
        {"AXRoleDescription", CFValue("standard window")},
        {"AXTitle", setup.title ? std::optional<CFValue>(*setup.title) : std::nullopt},
        {"AXMain", CFValue(false)},
        {"AXFocused", CFValue(false)},
        {"AXMinimized", CFValue(setup.minimized)},
        {"AXFullScreen", CFValue(setup.fullScreen)},
        {"AXModal", CFValue(false)},
        {"AXParent", CFValue(applicationHandle)},
    };
    window.settable = {"AXMain",       "AXFocused",  "AXMinimized",
                       "AXFullScreen", "AXPosition", "AXSize"};
    window.actions = {{"AXRaise", "raise"}};
    setFrame(window, setup.position, setup.size);
    CFValue::Array children;
    for (const auto& [attribute, buttonSpec] : {std::pair{"AXCloseButton", setup.closeButton},
                                                std::pair{"AXMinimizeButton", setup.minimizeButton},
                                                std::pair{"AXZoomButton", setup.zoomButton}}) {
        if (auto button = addButton(window, attribute, attribute, buttonSpec)) {
            children.emplace_back(std::move(button));
        }
    }
    window.attributes["AXChildren"] = CFValue(std::move(children));
    auto& order = processes_.at(pid).windows;
    order.insert(order.begin(), key.id);
    syncProcess(pid);
    notify(key, "AXWindowCreated");
    if (setup.becomesMain && !setup.minimized)
        chooseMainWindow(pid, key.id);
    return window.handle;
}

AXUIElementRef SimAccessibility::addButton(Element& window, const std::string& attribute,
                                           const std::string& subrole,
                                           SimWindowSetup::Button setup) {
    if (!setup.present) {
        window.attributes[attribute] = std::nullopt;
        return nullptr;
    }
    const auto& windowKey = keyOf(window.handle);
    auto& button = makeElement({windowKey.pid, ++lastElementId_}, windowKey);
    button.attributes = {
        {"AXRole", CFValue("AXButton")},       {"AXSubrole", CFValue(subrole)},
        {"AXEnabled", CFValue(setup.enabled)}, {"AXParent", CFValue(window.handle)},
        {"AXWindow", CFValue(window.handle)},
    };
    button.actions = {{"AXPress", "press"}};
    window.attributes[attribute] = CFValue(button.handle);
    return button.handle;
}

void SimAccessibility::removeWindow(const AXUIElementRef& window) {
    const auto key = keyOf(require(window, "removeWindow").handle);
    notify(key, "AXUIElementDestroyed");
    std::set<SimAXElementKey> gone{key};
    // Descendants come after their ancestors in key order, as ids only grow.
    for (const auto& [elementKey, element] : elements_) {
        if (element.parent && gone.count(*element.parent))
            gone.insert(elementKey);
    }
    for (const auto& goneKey : gone)
        elements_.erase(goneKey);
    auto& running = processes_.at(key.pid);
    std::erase(running.windows, key.id);
    if (running.mainWindow == key.id) {
        running.mainWindow.reset();
        chooseNextMainWindow(key.pid);
    }
    syncProcess(key.pid);
}

void SimAccessibility::setTitle(const AXUIElementRef& window, std::optional<std::string> title) {
    auto& element = require(window, "setTitle");
    element.attributes["AXTitle"] = title ? std::optional<CFValue>(*title) : std::nullopt;
    notify(keyOf(element.handle), "AXTitleChanged");
}

void SimAccessibility::moveWindow(const AXUIElementRef& window, CGPoint position) {
    auto& element = require(window, "moveWindow");
    setFrame(element, position, frameOf(element).value_or(CGRect{}).size);
    notify(keyOf(element.handle), "AXMoved");
}

void SimAccessibility::resizeWindow(const AXUIElementRef& window, CGSize size) {
    auto& element = require(window, "resizeWindow");
    setFrame(element, frameOf(element).value_or(CGRect{}).origin, size);
    notify(keyOf(element.handle), "AXResized");
}

void SimAccessibility::setFrame(Element& window, CGPoint position, CGSize size) {
    window.attributes["AXPosition"] = CFValue(AXValue::point(position));
    window.attributes["AXSize"] = CFValue(AXValue::size(size));
    window.attributes["AXFrame"] = CFValue(AXValue::rect({position, size}));
}

void SimAccessibility::setMinimized(const AXUIElementRef& window, bool minimized) {
    auto& element = require(window, "setMinimized");
    if (flag(element, "AXMinimized") == minimized)
        return;
    element.attributes["AXMinimized"] = CFValue(minimized);
    const auto key = keyOf(element.handle);
    if (minimized) {
        notify(key, "AXWindowMiniaturized");
        if (processes_.at(key.pid).mainWindow == key.id)
            chooseNextMainWindow(key.pid);
    } else {
        notify(key, "AXWindowDeminiaturized");
        raiseWindow(window);
    }
}

void SimAccessibility::setFullScreen(const AXUIElementRef& window, bool fullScreen) {
    require(window, "setFullScreen").attributes["AXFullScreen"] = CFValue(fullScreen);
}

void SimAccessibility::raiseWindow(const AXUIElementRef& window) {
    const auto key = keyOf(require(window, "raiseWindow").handle);
    auto& order = processes_.at(key.pid).windows;
    std::erase(order, key.id);
    order.insert(order.begin(), key.id);
    syncProcess(key.pid);
    chooseMainWindow(key.pid, key.id);
}

void SimAccessibility::chooseMainWindow(pid_t pid, std::optional<std::uint64_t> window) {
    auto& running = processes_.at(pid);
    if (running.mainWindow == window)
        return;
    running.mainWindow = window;
    syncProcess(pid);
    if (window)
        notify({pid, *window}, "AXMainWindowChanged");
}

void SimAccessibility::chooseNextMainWindow(pid_t pid) {
    const auto& running = processes_.at(pid);
    auto next = std::find_if(running.windows.begin(), running.windows.end(), [&](auto id) {
        return id != running.mainWindow && !flag(elements_.at({pid, id}), "AXMinimized");
    });
    chooseMainWindow(
        pid, next == running.windows.end() ? std::nullopt : std::optional<std::uint64_t>(*next));
}

void SimAccessibility::setFrontmost(pid_t pid, bool frontmost) {
    if (workspace_ && frontmost) {
        if (auto running = workspace_->runningApplicationWithProcessIdentifier(pid)) {
            workspace_->setFrontmostApplication(running);
            return;
        }
    }
    auto it = processes_.find(pid);
    const bool wasFrontmost = it != processes_.end() && it->second.frontmost;
    if (frontmost) {
        frontmostChanged(pid);
    } else if (wasFrontmost) {
        frontmostChanged(0);
    }
}

void SimAccessibility::frontmostChanged(pid_t frontmostPid) {
    for (auto& [pid, running] : processes_) {
        const bool frontmost = pid == frontmostPid;
        if (running.frontmost == frontmost)
            continue;
        running.frontmost = frontmost;
        syncProcess(pid);
        notify({pid, 0}, frontmost ? "AXApplicationActivated" : "AXApplicationDeactivated");
    }
}

void SimAccessibility::syncProcess(pid_t pid) {
    const auto& running = processes_.at(pid);
    CFValue::Array windows;
    for (auto id : running.windows) {
        auto& window = elements_.at({pid, id});
        const bool main = running.mainWindow == id;
        window.attributes["AXMain"] = CFValue(main);
        window.attributes["AXFocused"] = CFValue(main);
        windows.emplace_back(window.handle);
    }
    auto mainWindow = running.mainWindow
                          ? std::optional<CFValue>(elements_.at({pid, *running.mainWindow}).handle)
                          : std::nullopt;
    auto& application = elements_.at({pid, 0}).attributes;
    application["AXWindows"] = CFValue(windows);
    application["AXChildren"] = CFValue(windows);
    application["AXMainWindow"] = mainWindow;
    application["AXFocusedWindow"] = mainWindow;
    application["AXFrontmost"] = CFValue(running.frontmost);
}

AXErrorCode SimAccessibility::write(Element& element, const std::string& attribute,
                                    const CFValue& value) {
    const auto key = keyOf(element.handle);
    if (isWindow(key) && writeWindowState(element.handle, attribute, value))
        return ax::success;
    if (key.isApplication() && attribute == "AXFrontmost") {
        setFrontmost(key.pid, *value.get<bool>());
        return ax::success;
    }
    element.attributes[attribute] = value;
    return ax::success;
}

// The value is of the kind the attribute holds: the caller checked.
bool SimAccessibility::writeWindowState(const AXUIElementRef& window, const std::string& attribute,
                                        const CFValue& value) {
    const auto* on = value.get<bool>();
    const auto* box = value.get<AXValue>();
    if (attribute == "AXMinimized") {
        setMinimized(window, *on);
    } else if (attribute == "AXFullScreen") {
        setFullScreen(window, *on);
    } else if (attribute == "AXMain" || attribute == "AXFocused") {
        if (*on)
            raiseWindow(window);
    } else if (attribute == "AXPosition") {
        moveWindow(window, std::get<CGPoint>(box->value));
    } else if (attribute == "AXSize") {
        resizeWindow(window, std::get<CGSize>(box->value));
    } else {
        return false;
    }
    return true;
}

AXErrorCode SimAccessibility::act(Element& element, const std::string& action) {
    const auto key = keyOf(element.handle);
    if (action == "AXRaise" && isWindow(key))
        raiseWindow(element.handle);
    if (action == "AXPress")
        pressButton(element);
    return ax::success;
}

void SimAccessibility::pressButton(Element& button) {
    if (!flag(button, "AXEnabled") || !button.parent || !isWindow(*button.parent))
        return;
    const auto windowKey = *button.parent;
    const auto window = elements_.at(windowKey).handle;
    const auto& subrole = button.attributes["AXSubrole"];
    const auto* kind = subrole ? subrole->get<std::string>() : nullptr;
    // Closing the window takes the button with it: copy what is needed.
    const std::string name = kind ? *kind : "";
    if (name == "AXCloseButton") {
        removeWindow(window);
    } else if (name == "AXMinimizeButton") {
        setMinimized(window, true);
    } else if (name == "AXZoomButton") {
        setFullScreen(window, !flag(elements_.at(windowKey), "AXFullScreen"));
    }
}

AXUIElementRef SimAccessibility::addElement(const AXUIElementRef& parent, const std::string& role) {
    const auto parentKey = keyOf(require(parent, "addElement").handle);
    auto& element = makeElement({parentKey.pid, ++lastElementId_}, parentKey);
    element.attributes = {{"AXRole", CFValue(role)}, {"AXParent", CFValue(parent)}};
    return element.handle;
}

void SimAccessibility::setAttribute(const AXUIElementRef& element, const std::string& attribute,
                                    std::optional<CFValue> value, bool settable) {
    auto& found = require(element, "setAttribute");
    found.attributes[attribute] = std::move(value);
    if (settable) {
        found.settable.insert(attribute);
    } else {
        found.settable.erase(attribute);
    }
}

void SimAccessibility::removeAttribute(const AXUIElementRef& element,
                                       const std::string& attribute) {
    auto& found = require(element, "removeAttribute");
    found.attributes.erase(attribute);
    found.settable.erase(attribute);
}

void SimAccessibility::addAction(const AXUIElementRef& element, const std::string& action,
                                 std::string description) {
    require(element, "addAction").actions.emplace_back(action, std::move(description));
}

void SimAccessibility::setParameterizedAttribute(const AXUIElementRef& element,
                                                 const std::string& attribute,
                                                 ParameterizedAttribute answer) {
    require(element, "setParameterizedAttribute").parameterized[attribute] = std::move(answer);
}

AXUIElementRef SimAccessibility::applicationElement(pid_t pid) const {
    auto it = elements_.find({pid, 0});
    return it == elements_.end() ? nullptr : it->second.handle;
}

std::vector<AXUIElementRef> SimAccessibility::windows(pid_t pid) const {
    std::vector<AXUIElementRef> result;
    auto it = processes_.find(pid);
    if (it == processes_.end())
        return result;
    for (auto id : it->second.windows)
        result.push_back(elements_.at({pid, id}).handle);
    return result;
}

AXUIElementRef SimAccessibility::mainWindow(pid_t pid) const {
    auto it = processes_.find(pid);
    if (it == processes_.end() || !it->second.mainWindow)
        return nullptr;
    return elements_.at({pid, *it->second.mainWindow}).handle;
}

AXUIElementRef SimAccessibility::button(const AXUIElementRef& window,
                                        const std::string& attribute) const {
    auto stored = value(window, attribute);
    const auto* handle = stored ? stored->get<AXUIElementRef>() : nullptr;
    return handle ? *handle : nullptr;
}

bool SimAccessibility::exists(const AXUIElementRef& element) const {
    return find(element);
}

std::optional<CFValue> SimAccessibility::value(const AXUIElementRef& element,
                                               const std::string& attribute) const {
    const auto* found = find(element);
    if (!found)
        return std::nullopt;
    auto it = found->attributes.find(attribute);
    return it == found->attributes.end() ? std::nullopt : it->second;
}

std::optional<float> SimAccessibility::messagingTimeoutOf(const AXUIElementRef& element) const {
    const auto* found = find(element);
    return found ? found->messagingTimeout : std::nullopt;
}

}  // namespace platform::sim
