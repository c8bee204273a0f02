// The fixed tables of key equivalents the local monitor can be filled with.
#include <initializer_list>
#include <utility>

#include "shortcuts/SRLocalShortcutMonitor.h"

namespace lirixkro {

namespace {

using Row = std::pair<const char*, const char*>;  // key equivalent, selector

std::shared_ptr<SRLocalShortcutMonitor> monitorWith(std::initializer_list<Row> rows) {
    auto monitor = std::make_shared<SRLocalShortcutMonitor>();
    for (const auto& [keyEquivalent, selector] : rows)
        monitor->addAction(selector, keyEquivalent, 0);
    return monitor;
}

}  // namespace

std::shared_ptr<SRLocalShortcutMonitor> SRLocalShortcutMonitor::standardShortcuts() {
    return monitorWith({
        {"⌃f", "moveForward:"},
        {"⌃b", "moveBackward:"},
        {"→", "moveRight:"},
        {"←", "moveLeft:"},
        {"↑", "moveUp:"},
        {"↓", "moveDown:"},
        {"⌃a", "moveToBeginningOfParagraph:"},
        {"⌃e", "moveToEndOfParagraph:"},
        {"↩", "insertNewline:"},
        {"⇥", "insertTab:"},
        {"⌫", "deleteBackward:"},
        {"⌦", "deleteForward:"},
        {"⌃k", "deleteToEndOfParagraph:"},
        {"⌃y", "yank:"},
        {"⌃t", "transpose:"},
        {"⌃2", "setMark:"},
    });
}

std::shared_ptr<SRLocalShortcutMonitor> SRLocalShortcutMonitor::mainMenuShortcuts() {
    return monitorWith({
        {"⌘,", "orderFrontPreferencesPanel:"},
        {"⌘h", "hide:"},
        {"⌘q", "terminate:"},
        {"⌘n", "newDocument:"},
        {"⌘o", "openDocument:"},
        {"⌘w", "performClose:"},
        {"⌘s", "saveDocument:"},
        {"⌘z", "undo:"},
        {"⌘c", "copy:"},
        {"⌘v", "paste:"},
        {"⌘m", "performMiniaturize:"},
        {"⌘?", "showHelp:"},
    });
}

std::shared_ptr<SRLocalShortcutMonitor> SRLocalShortcutMonitor::clipboardShortcuts() {
    return monitorWith({
        {"⌘x", "cut:"},
        {"⌘c", "copy:"},
        {"⌘v", "paste:"},
        {"⌥⇧⌘v", "pasteAsPlainText:"},
        {"⌘a", "selectAll:"},
    });
}

std::shared_ptr<SRLocalShortcutMonitor> SRLocalShortcutMonitor::windowShortcuts() {
    return monitorWith({
        {"⌘w", "performClose:"},
        {"⌘m", "performMiniaturize:"},
        {"⌃⌘f", "toggleFullScreen:"},
        {"⌥⌘w", "closeAll:"},
    });
}

std::shared_ptr<SRLocalShortcutMonitor> SRLocalShortcutMonitor::documentShortcuts() {
    return monitorWith({
        {"⌘n", "newDocument:"},
        {"⌘o", "openDocument:"},
        {"⌘s", "saveDocument:"},
        {"⇧⌘s", "saveDocumentAs:"},
        {"⌘p", "printDocument:"},
        {"⇧⌘p", "runPageLayout:"},
        {"⌘z", "undo:"},
        {"⇧⌘z", "redo:"},
    });
}

std::shared_ptr<SRLocalShortcutMonitor> SRLocalShortcutMonitor::appShortcuts() {
    return monitorWith({
        {"⌘,", "orderFrontPreferencesPanel:"},
        {"⌘h", "hide:"},
        {"⌥⌘h", "hideOtherApplications:"},
        {"⌘q", "terminate:"},
    });
}

}  // namespace lirixkro
