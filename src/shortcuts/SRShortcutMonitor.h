#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/Event.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRShortcutAction.h"
#include "support/Signal.h"

namespace lirixkro {

// The bookkeeping of shortcut actions by key event: which actions are added
// for key down and key up, which of them are enabled, and under which
// shortcut each enabled one is found, in the order of adding. Subclasses
// take key events from somewhere and learn through the hooks when a
// shortcut comes into use and goes out of it.
//
// One lock, held by every mutation, guards it all; the hooks run inside it.
// Key events are platform::EventType::keyDown or keyUp; any other raises
// SRInvalidArgumentException.
class SRShortcutMonitor {
  public:
    using KeyEvent = platform::EventType;

    SRShortcutMonitor();
    virtual ~SRShortcutMonitor();
    SRShortcutMonitor(const SRShortcutMonitor&) = delete;
    SRShortcutMonitor& operator=(const SRShortcutMonitor&) = delete;

    // Snapshots.
    std::vector<SRShortcutActionRef> actions() const;
    std::vector<SRShortcutRef> shortcuts() const;
    std::vector<SRShortcutActionRef> actionsForKeyEvent(KeyEvent keyEvent) const;
    // In the order of adding; empty, never absent.
    std::vector<SRShortcutActionRef> enabledActionsForShortcut(const SRShortcut& shortcut,
                                                               KeyEvent keyEvent) const;

    // An action may be added once for each key event. Adding it again for
    // the same event moves it to the end of its shortcut's actions, so that
    // the latest added is tried first.
    void addAction(const SRShortcutActionRef& action, KeyEvent keyEvent);
    void removeAction(const SRShortcutActionRef& action, KeyEvent keyEvent);
    void removeAction(const SRShortcutActionRef& action);
    void removeAllActions();

    // An action for key down with no target, made from a menu's key
    // equivalent ("⇧⌘K"); null when the text gives no shortcut.
    SRShortcutActionRef addAction(SRSelector selector, std::string_view keyEquivalent, long tag);

    // "Key Down Shortcuts: {" with each shortcut's actions, then the same
    // for key up; "No Shortcuts" when there are none.
    std::string debugDescription() const;

    // Told around every change of the shortcuts in use: true before, false
    // after.
    platform::Subscription observeShortcuts(std::function<void(bool isPrior)> changed) {
        return shortcutsChange_.connect(std::move(changed));
    }

  protected:
    // Hooks, in the order called, when a shortcut comes into use (its count
    // goes from 0 to 1) and goes out of it (from 1 to 0).
    virtual void willAddShortcut(const SRShortcutRef& /*shortcut*/) {}
    virtual void didAddShortcut(const SRShortcutRef& /*shortcut*/) {}
    virtual void willRemoveShortcut(const SRShortcutRef& /*shortcut*/) {}
    virtual void didRemoveShortcut(const SRShortcutRef& /*shortcut*/) {}

    std::recursive_mutex& lock() const { return lock_; }
    // The count of a shortcut in use; 0 when it isn't.
    std::size_t countOfShortcut(const SRShortcut& shortcut) const;
    std::size_t distinctShortcutCount() const;
    // Performs the enabled actions of a shortcut, the latest added first,
    // until one performs. Whether one did.
    bool performActions(const SRShortcut& shortcut, KeyEvent keyEvent,
                        const std::shared_ptr<SRShortcutActionTarget>& target);

  private:
    struct ShortcutKey {
        SRKeyCode keyCode;
        SRModifierFlags modifierFlags;
        friend bool operator==(const ShortcutKey&, const ShortcutKey&) = default;
    };
    struct ShortcutKeyHash {
        std::size_t operator()(const ShortcutKey& key) const noexcept {
            return std::hash<std::uint64_t>()(key.modifierFlags << 16 | key.keyCode);
        }
    };
    struct CountedShortcut {
        SRShortcutRef shortcut;
        std::size_t count = 0;
    };
    struct Entry {
        SRShortcutActionRef action;
        std::size_t count = 0;
        platform::Subscription observation;
        // The shortcut the action is found under while enabled; it stays
        // until the action is moved, whatever the action's shortcut is now.
        SRShortcutRef enteredShortcut;
    };
    using ActionsByShortcut =
        std::unordered_map<ShortcutKey, std::vector<SRShortcutActionRef>, ShortcutKeyHash>;

    static ShortcutKey keyOf(const SRShortcut& shortcut) {
        return {shortcut.keyCode(), shortcut.modifierFlags()};
    }
    Entry* entryOf(const SRShortcutAction* action);
    const Entry* entryOf(const SRShortcutAction* action) const;
    ActionsByShortcut& actionsByShortcut(KeyEvent keyEvent);
    const ActionsByShortcut& actionsByShortcut(KeyEvent keyEvent) const;
    std::unordered_set<const SRShortcutAction*>& actionsOfKind(KeyEvent keyEvent);
    const std::unordered_set<const SRShortcutAction*>& actionsOfKind(KeyEvent keyEvent) const;
    std::vector<KeyEvent> kindsOf(const SRShortcutAction* action) const;

    void actionDidChange(const SRShortcutAction* action, std::string_view field);
    void setEntryEnabled(Entry& entry, bool enabled);
    void moveEntry(Entry& entry, SRShortcutRef shortcut);
    void enter(Entry& entry, KeyEvent keyEvent);
    void leave(Entry& entry, KeyEvent keyEvent);
    void countUp(const SRShortcutRef& shortcut);
    void countDown(const SRShortcutRef& shortcut);

    mutable std::recursive_mutex lock_;
    std::vector<std::unique_ptr<Entry>> actions_;
    std::unordered_set<const SRShortcutAction*> enabledActions_;
    ActionsByShortcut shortcutToEnabledKeyDownActions_;
    ActionsByShortcut shortcutToEnabledKeyUpActions_;
    std::unordered_set<const SRShortcutAction*> keyUpActions_;
    std::unordered_set<const SRShortcutAction*> keyDownActions_;
    std::unordered_map<ShortcutKey, CountedShortcut, ShortcutKeyHash> shortcuts_;
    quillbox::Signal<bool> shortcutsChange_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace lirixkro
