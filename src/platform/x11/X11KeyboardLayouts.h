#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/HandlerList.h"
#include "platform/KeyboardLayout.h"
#include "platform/LifetimeGuard.h"
#include "platform/x11/X11InputEventSource.h"
#include "platform/x11/XkbInputSource.h"
#include "platform/x11/XkbLayoutNames.h"

namespace platform::x11 {

// The keyboard layouts of the X server's core keyboard. Each layout group of
// the server's keymap is an input source named "xkb:" and the group's layout;
// the current one follows the server's active group, and the keymap is read
// again when the server loads a new one.
class X11KeyboardLayouts final : public KeyboardLayouts {
  public:
    // Nothing when the server has no usable keyboard extension.
    static std::unique_ptr<X11KeyboardLayouts> create(X11InputEventSource& source);
    ~X11KeyboardLayouts() override;

    std::shared_ptr<InputSource> copyCurrentKeyboardLayoutInputSource() override;
    std::shared_ptr<InputSource> copyCurrentASCIICapableKeyboardLayoutInputSource() override;
    Subscription observeLayoutChanges(std::function<void()> handler) override;
    // The toolkit's key events carry the X keycode and core modifier state.
    std::optional<Event> eventForNativeKeyEvent(const NativeKeyEvent& native) const override;

    // The current layout for the event path, which translates X keycodes.
    const std::shared_ptr<XkbInputSource>& currentSource() const { return current_; }

  private:
    X11KeyboardLayouts(X11InputEventSource& source, std::int32_t deviceId, std::uint8_t firstEvent);

    void handleEvent(const xcb_generic_event_t& event);
    void reloadSoon();
    // False when the server's keymap couldn't be read; the old one stays.
    bool reload();
    void selectGroup(xkb_layout_index_t group);
    std::optional<XkbRulesNames> readRulesNames();
    std::shared_ptr<XkbInputSource> builtInUSSource();

    X11InputEventSource& source_;
    std::int32_t deviceId_;
    std::uint8_t firstEvent_;
    xcb_atom_t rulesNamesAtom_;
    XkbContextRef context_;
    std::shared_ptr<XkbLayoutNamer> namer_ = std::make_shared<XkbLayoutNamer>();
    // The sources are written on the main loop only, but copied from any
    // thread; the lock covers those writes and the copies.
    mutable std::mutex sourcesLock_;
    std::vector<std::shared_ptr<XkbInputSource>> groups_;
    std::shared_ptr<XkbInputSource> current_;
    std::shared_ptr<XkbInputSource> asciiCapable_;
    std::shared_ptr<XkbInputSource> builtInUS_;
    Token eventHandler_;
    bool reloadPosted_ = false;
    HandlerList<> observers_;
    // Tasks posted to the loop may run after the layouts are gone.
    LifetimeGuard lifetime_;
};

}  // namespace platform::x11
