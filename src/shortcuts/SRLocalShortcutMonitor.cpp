#include "shortcuts/SRLocalShortcutMonitor.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "platform/Platform.h"
#include "shortcuts/SRKeyEventType.h"
#include "shortcuts/SRResources.h"
#include "shortcuts/SRTextPropertyList.h"
#include "support/Log.h"

namespace lirixkro {

using platform::PropertyList;
using quillbox::Log;

namespace {

std::optional<PropertyList::Dictionary> readKeyBindings(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    const std::string bytes((std::istreambuf_iterator<char>(file)),
                            std::istreambuf_iterator<char>());
    auto list = SRReadPropertyList(bytes);
    const auto* dictionary = list ? list->dictionary() : nullptr;
    return dictionary ? std::optional(*dictionary) : std::nullopt;
}

// The selector names of a binding: one name, or a list of them. Nothing for
// any other value, such as the dictionary of a key sequence.
std::optional<std::vector<std::string>> selectorsOf(const PropertyList& value) {
    if (const auto* name = value.string())
        return std::vector<std::string>{*name};
    const auto* list = value.array();
    if (!list)
        return std::nullopt;
    std::vector<std::string> names;
    for (const auto& item : *list) {
        if (const auto* name = item.string())
            names.push_back(*name);
    }
    return names;
}

}  // namespace

bool SRLocalShortcutMonitor::handleEvent(const platform::Event& event,
                                         const std::shared_ptr<SRShortcutActionTarget>& target) {
    const auto shortcut = SRShortcut::shortcutWithEvent(event, true);
    if (!shortcut) {
        Log::error("#Error Not a keyboard event");
        return false;
    }
    return performActions(*shortcut, SR_keyEventType(event), target);
}

std::filesystem::path SRLocalShortcutMonitor::systemKeyBindingsPath() {
    return SRResourceDirectory() / "StandardKeyBinding.dict";
}

std::filesystem::path SRLocalShortcutMonitor::userKeyBindingsPath() {
    const std::filesystem::path file =
        std::filesystem::path("KeyBindings") / "DefaultKeyBinding.dict";
    if (auto* files = platform::installed().fileManager) {
        if (auto library = files->urlForDirectory(platform::SearchPathDirectory::library,
                                                  platform::SearchPathDomain::user, false)) {
            return *library / file;
        }
    }
    const char* home = std::getenv("HOME");
    return std::filesystem::path(home ? home : "") / "Library" / file;
}

void SRLocalShortcutMonitor::updateWithCocoaTextKeyBindings() {
    auto bindings = readKeyBindings(systemKeyBindingsPath());
    if (!bindings) {
        Log::error("#Error unable to read system key bindings");
        bindings.emplace();
    }
    if (auto user = readKeyBindings(userKeyBindingsPath())) {
        for (auto& [key, value] : *user)
            bindings->insert_or_assign(key, std::move(value));
    } else {
        Log::error("#Error unable to read user key bindings");
    }

    for (const auto& [key, value] : *bindings) {
        if (key.empty())
            continue;
        auto shortcut = SRShortcut::shortcutWithKeyBinding(key);
        const auto selectors = selectorsOf(value);
        if (!shortcut || !selectors)
            continue;
        for (const auto& selector : *selectors) {
            if (selector.empty() || selector == "noop:") {
                for (const auto& action : enabledActionsForShortcut(*shortcut, KeyEvent::keyDown))
                    removeAction(action, KeyEvent::keyDown);
                continue;
            }
            addAction(SRShortcutAction::shortcutActionWithShortcut(
                          shortcut, std::weak_ptr<SRShortcutActionTarget>(), selector, 0),
                      KeyEvent::keyDown);
        }
    }
}

}  // namespace lirixkro
