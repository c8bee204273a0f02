#include "shortcuts/SRShortcutMonitor.h"

#include <algorithm>

#include "shortcuts/SRExceptions.h"
#include "shortcuts/SRKeyEventType.h"

namespace lirixkro {

using KeyEvent = SRShortcutMonitor::KeyEvent;

namespace {

constexpr KeyEvent bothKinds[] = {KeyEvent::keyDown, KeyEvent::keyUp};

}  // namespace

SRShortcutMonitor::SRShortcutMonitor() = default;

SRShortcutMonitor::~SRShortcutMonitor() {
    *alive_ = false;
}

std::vector<SRShortcutActionRef> SRShortcutMonitor::actions() const {
    std::lock_guard lock(lock_);
    std::vector<SRShortcutActionRef> snapshot;
    for (const auto& entry : actions_) {
        for (std::size_t i = 0; i < entry->count; ++i)
            snapshot.push_back(entry->action);
    }
    return snapshot;
}

std::vector<SRShortcutRef> SRShortcutMonitor::shortcuts() const {
    std::lock_guard lock(lock_);
    std::vector<SRShortcutRef> snapshot;
    for (const auto& [key, counted] : shortcuts_)
        snapshot.push_back(counted.shortcut);
    return snapshot;
}

std::vector<SRShortcutActionRef> SRShortcutMonitor::actionsForKeyEvent(KeyEvent keyEvent) const {
    SRCheckKeyEventType(keyEvent);
    std::lock_guard lock(lock_);
    std::vector<SRShortcutActionRef> snapshot;
    const auto& kind = actionsOfKind(keyEvent);
    for (const auto& entry : actions_) {
        if (kind.count(entry->action.get()))
            snapshot.push_back(entry->action);
    }
    return snapshot;
}

std::vector<SRShortcutActionRef> SRShortcutMonitor::enabledActionsForShortcut(
    const SRShortcut& shortcut, KeyEvent keyEvent) const {
    SRCheckKeyEventType(keyEvent);
    std::lock_guard lock(lock_);
    const auto& map = actionsByShortcut(keyEvent);
    auto found = map.find(keyOf(shortcut));
    return found == map.end() ? std::vector<SRShortcutActionRef>() : found->second;
}

std::size_t SRShortcutMonitor::countOfShortcut(const SRShortcut& shortcut) const {
    std::lock_guard lock(lock_);
    auto found = shortcuts_.find(keyOf(shortcut));
    return found == shortcuts_.end() ? 0 : found->second.count;
}

std::size_t SRShortcutMonitor::distinctShortcutCount() const {
    std::lock_guard lock(lock_);
    return shortcuts_.size();
}

void SRShortcutMonitor::addAction(const SRShortcutActionRef& action, KeyEvent keyEvent) {
    SRCheckKeyEventType(keyEvent);
    std::lock_guard lock(lock_);
    Entry* entry = entryOf(action.get());
    SRAssert(!entry || entry->count < 2, "Action is added too many times");

    auto& kind = actionsOfKind(keyEvent);
    if (kind.count(action.get())) {
        if (!enabledActions_.count(action.get()) || !entry->enteredShortcut)
            return;
        auto& ordered = actionsByShortcut(keyEvent)[keyOf(*entry->enteredShortcut)];
        auto found = std::find(ordered.begin(), ordered.end(), action);
        SRAssert(found != ordered.end(), "Action was not added to the shortcut");
        std::rotate(found, found + 1, ordered.end());
        return;
    }

    kind.insert(action.get());
    if (entry) {
        ++entry->count;
        if (enabledActions_.count(action.get()))
            enter(*entry, keyEvent);
        return;
    }
    auto& added = *actions_.emplace_back(std::make_unique<Entry>());
    added.action = action;
    added.count = 1;
    const SRShortcutAction* key = action.get();
    added.observation =
        action->observe([this, alive = std::weak_ptr<bool>(alive_), key](std::string_view field) {
            if (alive.lock())
                actionDidChange(key, field);
        });
    setEntryEnabled(added, action->isEnabled());
}

void SRShortcutMonitor::removeAction(const SRShortcutActionRef& action, KeyEvent keyEvent) {
    SRCheckKeyEventType(keyEvent);
    std::lock_guard lock(lock_);
    auto& kind = actionsOfKind(keyEvent);
    Entry* entry = entryOf(action.get());
    if (!entry || !kind.count(action.get()))
        return;
    if (enabledActions_.count(action.get()))
        leave(*entry, keyEvent);
    kind.erase(action.get());
    if (--entry->count > 0)
        return;
    enabledActions_.erase(action.get());
    std::erase_if(actions_, [&](const auto& candidate) { return candidate.get() == entry; });
}

void SRShortcutMonitor::removeAction(const SRShortcutActionRef& action) {
    std::lock_guard lock(lock_);
    for (KeyEvent keyEvent : bothKinds)
        removeAction(action, keyEvent);
}

void SRShortcutMonitor::removeAllActions() {
    std::lock_guard lock(lock_);
    std::vector<SRShortcutRef> removed;
    for (const auto& [key, counted] : shortcuts_)
        removed.push_back(counted.shortcut);

    shortcutsChange_.emit(true);
    for (const auto& shortcut : removed)
        willRemoveShortcut(shortcut);
    actions_.clear();
    enabledActions_.clear();
    shortcutToEnabledKeyDownActions_.clear();
    shortcutToEnabledKeyUpActions_.clear();
    keyUpActions_.clear();
    keyDownActions_.clear();
    shortcuts_.clear();
    for (const auto& shortcut : removed)
        didRemoveShortcut(shortcut);
    shortcutsChange_.emit(false);
}

SRShortcutActionRef SRShortcutMonitor::addAction(SRSelector selector,
                                                 std::string_view keyEquivalent, long tag) {
    auto shortcut = SRShortcut::shortcutWithKeyEquivalent(keyEquivalent);
    if (!shortcut)
        return nullptr;
    auto action = SRShortcutAction::shortcutActionWithShortcut(
        std::move(shortcut), std::weak_ptr<SRShortcutActionTarget>(), std::move(selector), tag);
    addAction(action, KeyEvent::keyDown);
    return action;
}

std::string SRShortcutMonitor::debugDescription() const {
    std::lock_guard lock(lock_);
    if (shortcuts_.empty())
        return "No Shortcuts";
    std::string text;
    const auto describe = [&](const char* title, const ActionsByShortcut& map) {
        text += title;
        text += " {\n";
        for (const auto& [key, ordered] : map) {
            text += "\t" + shortcuts_.at(key).shortcut->description() + ": {\n";
            for (const auto& action : ordered)
                text += "\t\t" + action->description() + "\n";
            text += "\t}\n";
        }
        text += "}\n";
    };
    describe("Key Down Shortcuts:", shortcutToEnabledKeyDownActions_);
    describe("Key Up Shortcuts:", shortcutToEnabledKeyUpActions_);
    text.pop_back();
    return text;
}

bool SRShortcutMonitor::performActions(const SRShortcut& shortcut, KeyEvent keyEvent,
                                       const std::shared_ptr<SRShortcutActionTarget>& target) {
    const auto actions = enabledActionsForShortcut(shortcut, keyEvent);
    for (auto action = actions.rbegin(); action != actions.rend(); ++action) {
        if ((*action)->performActionOnTarget(target))
            return true;
    }
    return false;
}

SRShortcutMonitor::Entry* SRShortcutMonitor::entryOf(const SRShortcutAction* action) {
    for (auto& entry : actions_) {
        if (entry->action.get() == action)
            return entry.get();
    }
    return nullptr;
}

const SRShortcutMonitor::Entry* SRShortcutMonitor::entryOf(const SRShortcutAction* action) const {
    return const_cast<SRShortcutMonitor*>(this)->entryOf(action);
}

SRShortcutMonitor::ActionsByShortcut& SRShortcutMonitor::actionsByShortcut(KeyEvent keyEvent) {
    return keyEvent == KeyEvent::keyDown ? shortcutToEnabledKeyDownActions_
                                         : shortcutToEnabledKeyUpActions_;
}

const SRShortcutMonitor::ActionsByShortcut& SRShortcutMonitor::actionsByShortcut(
    KeyEvent keyEvent) const {
    return keyEvent == KeyEvent::keyDown ? shortcutToEnabledKeyDownActions_
                                         : shortcutToEnabledKeyUpActions_;
}

std::unordered_set<const SRShortcutAction*>& SRShortcutMonitor::actionsOfKind(KeyEvent keyEvent) {
    return keyEvent == KeyEvent::keyDown ? keyDownActions_ : keyUpActions_;
}

const std::unordered_set<const SRShortcutAction*>& SRShortcutMonitor::actionsOfKind(
    KeyEvent keyEvent) const {
    return keyEvent == KeyEvent::keyDown ? keyDownActions_ : keyUpActions_;
}

std::vector<KeyEvent> SRShortcutMonitor::kindsOf(const SRShortcutAction* action) const {
    std::vector<KeyEvent> kinds;
    for (KeyEvent keyEvent : bothKinds) {
        if (actionsOfKind(keyEvent).count(action))
            kinds.push_back(keyEvent);
    }
    return kinds;
}

void SRShortcutMonitor::actionDidChange(const SRShortcutAction* action, std::string_view field) {
    std::lock_guard lock(lock_);
    Entry* entry = entryOf(action);
    if (!entry)
        return;
    if (field == "enabled")
        setEntryEnabled(*entry, entry->action->isEnabled());
    else if (field == "shortcut" && enabledActions_.count(action))
        moveEntry(*entry, entry->action->shortcut());
}

void SRShortcutMonitor::setEntryEnabled(Entry& entry, bool enabled) {
    const SRShortcutAction* action = entry.action.get();
    if (enabled == static_cast<bool>(enabledActions_.count(action)))
        return;
    if (enabled) {
        enabledActions_.insert(action);
        entry.enteredShortcut = entry.action->shortcut();
        for (KeyEvent keyEvent : kindsOf(action))
            enter(entry, keyEvent);
    } else {
        for (KeyEvent keyEvent : kindsOf(action))
            leave(entry, keyEvent);
        enabledActions_.erase(action);
        entry.enteredShortcut = nullptr;
    }
}

void SRShortcutMonitor::moveEntry(Entry& entry, SRShortcutRef shortcut) {
    if (SRShortcutsEqual(entry.enteredShortcut, shortcut))
        return;
    const auto kinds = kindsOf(entry.action.get());
    for (KeyEvent keyEvent : kinds)
        leave(entry, keyEvent);
    entry.enteredShortcut = std::move(shortcut);
    for (KeyEvent keyEvent : kinds)
        enter(entry, keyEvent);
}

void SRShortcutMonitor::enter(Entry& entry, KeyEvent keyEvent) {
    if (!entry.enteredShortcut)
        return;
    actionsByShortcut(keyEvent)[keyOf(*entry.enteredShortcut)].push_back(entry.action);
    countUp(entry.enteredShortcut);
}

void SRShortcutMonitor::leave(Entry& entry, KeyEvent keyEvent) {
    if (!entry.enteredShortcut)
        return;
    auto& map = actionsByShortcut(keyEvent);
    auto found = map.find(keyOf(*entry.enteredShortcut));
    if (found == map.end())
        return;
    std::erase(found->second, entry.action);
    if (found->second.empty())
        map.erase(found);
    countDown(entry.enteredShortcut);
}

void SRShortcutMonitor::countUp(const SRShortcutRef& shortcut) {
    auto found = shortcuts_.find(keyOf(*shortcut));
    if (found != shortcuts_.end()) {
        ++found->second.count;
        return;
    }
    shortcutsChange_.emit(true);
    willAddShortcut(shortcut);
    shortcuts_.emplace(keyOf(*shortcut), CountedShortcut{shortcut, 1});
    didAddShortcut(shortcut);
    shortcutsChange_.emit(false);
}

void SRShortcutMonitor::countDown(const SRShortcutRef& shortcut) {
    auto found = shortcuts_.find(keyOf(*shortcut));
    if (found == shortcuts_.end())
        return;
    if (found->second.count > 1) {
        --found->second.count;
        return;
    }
    const SRShortcutRef counted = found->second.shortcut;
    shortcutsChange_.emit(true);
    willRemoveShortcut(counted);
    shortcuts_.erase(keyOf(*shortcut));
    didRemoveShortcut(counted);
    shortcutsChange_.emit(false);
}

}  // namespace lirixkro
