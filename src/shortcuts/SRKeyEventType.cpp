#include "shortcuts/SRKeyEventType.h"

#include "shortcuts/SRExceptions.h"
#include "support/Log.h"

namespace lirixkro {

using platform::EventType;

SRModifierFlags SRModifierFlagOfKeyCode(SRKeyCode keyCode) {
    switch (keyCode) {
        case 54:
        case 55:
            return SRCommandFlag;
        case 58:
        case 61:
            return SROptionFlag;
        case 56:
        case 60:
            return SRShiftFlag;
        case 59:
        case 62:
            return SRControlFlag;
        default:
            return 0;
    }
}

EventType SR_keyEventTypeForEventType(EventType eventType, SRKeyCode keyCode,
                                      SRModifierFlags modifierFlags) {
    switch (eventType) {
        case EventType::keyDown:
        case EventType::keyUp:
            return eventType;
        case EventType::flagsChanged: {
            const SRModifierFlags flag = SRModifierFlagOfKeyCode(keyCode);
            if (flag == 0) {
                quillbox::Log::error(quillbox::formatText(
                    "#Error Unexpected key code %hu for the FlagsChanged event", keyCode));
                return EventType::keyDown;
            }
            return (modifierFlags & flag) ? EventType::keyDown : EventType::keyUp;
        }
        default:
            throw SRInternalInconsistencyException(quillbox::formatText(
                "Expected a key event, got %lu", static_cast<unsigned long>(eventType)));
    }
}

EventType SR_keyEventType(const platform::Event& event) {
    return SR_keyEventTypeForEventType(event.type, event.keyCode, event.modifierFlags);
}

void SRCheckKeyEventType(EventType keyEvent) {
    if (keyEvent != EventType::keyDown && keyEvent != EventType::keyUp) {
        throw SRInvalidArgumentException(quillbox::formatText(
            "Unexpected keyboard event type %lu", static_cast<unsigned long>(keyEvent)));
    }
}

}  // namespace lirixkro
