#pragma once

#include <filesystem>
#include <memory>

#include "platform/Event.h"
#include "shortcuts/SRShortcutMonitor.h"

namespace lirixkro {

// Shortcuts for events the application hands over itself, such as a
// view's key events; and the tables of the usual key equivalents.
class SRLocalShortcutMonitor : public SRShortcutMonitor {
  public:
    // Performs the enabled actions of the event's shortcut on the target,
    // latest added first, until one performs. Whether one did.
    bool handleEvent(const platform::Event& event,
                     const std::shared_ptr<SRShortcutActionTarget>& target);

    // Adds the text system's key bindings: the standard ones, then the
    // user's, which replace the standard ones by key. A binding to "noop:"
    // or to nothing removes the actions of its shortcut.
    void updateWithCocoaTextKeyBindings();
    // Where the two files are read from: our own standard bindings among the
    // library's resources, and the user's in the KeyBindings folder of the
    // user's library folder ($XDG_CONFIG_HOME on Linux).
    static std::filesystem::path systemKeyBindingsPath();
    static std::filesystem::path userKeyBindingsPath();

    // Each a new monitor filled with one table of key equivalents: moving
    // and editing in text, a main menu's usual items, the clipboard, the
    // window, the document, the application.
    static std::shared_ptr<SRLocalShortcutMonitor> standardShortcuts();
    static std::shared_ptr<SRLocalShortcutMonitor> mainMenuShortcuts();
    static std::shared_ptr<SRLocalShortcutMonitor> clipboardShortcuts();
    static std::shared_ptr<SRLocalShortcutMonitor> windowShortcuts();
    static std::shared_ptr<SRLocalShortcutMonitor> documentShortcuts();
    static std::shared_ptr<SRLocalShortcutMonitor> appShortcuts();
};

}  // namespace lirixkro
