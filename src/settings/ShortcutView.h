#pragma once

#include <memory>

#include "recorder/SRRecorderControl.h"
#include "recorder/SRRecorderControlDelegate.h"
#include "recorder/SRRecorderControlStyling.h"
#include "shortcuts/SRValue.h"
#include "support/Binding.h"

namespace tarnwick {

// Places a recorder control in the Settings window: it makes the control,
// passes its parameters on at each update, and its coordinator carries the
// control's ends of recording back into two bindings. The defaults are the
// Settings window's values. The binding feeds the control at each update;
// the control's result reaches the binding only when a recording ends, so a
// cancelled recording writes the unchanged value back and a cleared one
// writes nothing.
struct ShortcutView {
    ShortcutView(quillbox::Binding<bool> recording,
                 quillbox::Binding<lirixkro::SRShortcutRef> value)
        : isRecording(std::move(recording)), shortcut(std::move(value)) {}

    quillbox::Binding<bool> isRecording;
    quillbox::Binding<lirixkro::SRShortcutRef> shortcut;
    lirixkro::SRModifierFlags allowedModifierFlags = lirixkro::SRCocoaModifierFlagsMask;
    lirixkro::SRModifierFlags requiredModifierFlags = 0;
    bool allowsEmptyModifierFlags = false;
    bool drawsASCIIEquivalentOfShortcut = true;
    bool allowsEscapeToCancelRecording = true;
    bool allowsDeleteToClearShortcutAndEndRecording = true;
    bool pausesGlobalShortcutMonitorWhileRecording = true;
    bool stringValueRespectsUserInterfaceLayoutDirection = false;
    // Lets the user record a chord of modifiers alone, the form of the
    // default shortcut.
    bool allowsModifierFlagsOnlyShortcut = true;
    // Carried, and deliberately not passed on: the control stays enabled.
    bool enabled = true;
    std::shared_ptr<lirixkro::SRRecorderControlStyling> style;

    // The control's delegate: the ends of recording go into the bindings.
    class Coordinator : public lirixkro::SRRecorderControlDelegate {
      public:
        Coordinator(quillbox::Binding<bool> recording,
                    quillbox::Binding<lirixkro::SRShortcutRef> value)
            : isRecording(std::move(recording)), shortcut(std::move(value)) {}
        Coordinator() = delete;

        void recorderControlDidBeginRecording(lirixkro::SRRecorderControl& control) override;
        bool recorderControlDidEndRecording(lirixkro::SRRecorderControl& control) override;

        quillbox::Binding<bool> isRecording;
        quillbox::Binding<lirixkro::SRShortcutRef> shortcut;
    };

    std::shared_ptr<Coordinator> makeCoordinator() const;
    // A control with the coordinator as its delegate and the current
    // shortcut as its value; nothing else is set here.
    std::shared_ptr<lirixkro::SRRecorderControl> makeView(
        const std::shared_ptr<Coordinator>& coordinator) const;
    // Passes every parameter but enabled on, in a fixed order, the value
    // last.
    void updateView(lirixkro::SRRecorderControl& control) const;
};

}  // namespace tarnwick
