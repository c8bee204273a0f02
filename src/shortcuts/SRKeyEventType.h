#pragma once

#include "platform/Event.h"
#include "shortcuts/SRCommon.h"

namespace lirixkro {

// Whether an event is a key going down or up. A key event gives its own
// type; a flags change tells by the changed modifier key's flag: set means
// the key went down. An unexpected key of a flags change is logged and
// counts as down. Any other event type raises SRInternalInconsistencyException.
platform::EventType SR_keyEventTypeForEventType(platform::EventType eventType, SRKeyCode keyCode,
                                                SRModifierFlags modifierFlags);
platform::EventType SR_keyEventType(const platform::Event& event);

// The flag of a modifier key (either Command, Option, Shift or Control key);
// 0 for any other key.
SRModifierFlags SRModifierFlagOfKeyCode(SRKeyCode keyCode);

// Raises SRInvalidArgumentException unless the type is key down or key up.
void SRCheckKeyEventType(platform::EventType keyEvent);

}  // namespace lirixkro
