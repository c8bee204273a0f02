#include "settings/ShortcutView.h"

namespace tarnwick {

void ShortcutView::Coordinator::recorderControlDidBeginRecording(lirixkro::SRRecorderControl&) {
    isRecording.set(true);
}

bool ShortcutView::Coordinator::recorderControlDidEndRecording(
    lirixkro::SRRecorderControl& control) {
    isRecording.set(false);
    shortcut.set(control.objectValue());
    return true;
}

std::shared_ptr<ShortcutView::Coordinator> ShortcutView::makeCoordinator() const {
    return std::make_shared<Coordinator>(isRecording, shortcut);
}

std::shared_ptr<lirixkro::SRRecorderControl> ShortcutView::makeView(
    const std::shared_ptr<Coordinator>& coordinator) const {
    auto control = std::make_shared<lirixkro::SRRecorderControl>();
    control->setDelegate(coordinator);
    control->setObjectValue(shortcut.get());
    return control;
}

void ShortcutView::updateView(lirixkro::SRRecorderControl& control) const {
    control.drawsASCIIEquivalentOfShortcut = drawsASCIIEquivalentOfShortcut;
    control.allowsEscapeToCancelRecording = allowsEscapeToCancelRecording;
    control.allowsDeleteToClearShortcutAndEndRecording = allowsDeleteToClearShortcutAndEndRecording;
    control.pausesGlobalShortcutMonitorWhileRecording = pausesGlobalShortcutMonitorWhileRecording;
    control.stringValueRespectsUserInterfaceLayoutDirection =
        stringValueRespectsUserInterfaceLayoutDirection;
    control.allowsModifierFlagsOnlyShortcut = allowsModifierFlagsOnlyShortcut;
    control.setAllowedModifierFlags(allowedModifierFlags, requiredModifierFlags,
                                    allowsEmptyModifierFlags);
    control.setStyle(style);
    control.setObjectValue(shortcut.get());
}

}  // namespace tarnwick
