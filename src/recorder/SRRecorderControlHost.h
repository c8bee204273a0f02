#pragma once

#include <string>

#include "platform/Geometry.h"
#include "recorder/SRRecorderControlStyleComponents.h"
#include "shortcuts/SRValidationError.h"

namespace lirixkro {

// The accessibility notifications a recorder control posts.
enum class SRAccessibilityNotification { layoutChanged, titleChanged, valueChanged };

// The toolkit's side of a recorder control: the view that draws it, has the
// keyboard focus, beeps and speaks to the screen reader. The control holds
// all the rules and tells its view what to do.
class SRRecorderControlHost : public SRToolkitAppearanceSource {
  public:
    // Whether the view has the keyboard focus of its window.
    virtual bool isFirstResponder() const = 0;
    // Asks the window for the focus; false when it isn't given.
    virtual bool makeFirstResponder() = 0;
    // Gives the focus back to the window.
    virtual void resignFirstResponder() = 0;
    // Whether focus may rest on the control by the keyboard: with full
    // keyboard access only.
    virtual bool canBecomeKeyView() const = 0;

    virtual platform::CGSize bounds() const = 0;
    virtual void setNeedsDisplay() = 0;
    // The constraints changed: lay out anew.
    virtual void setNeedsLayout() = 0;
    virtual void setToolTip(const std::string& toolTip) = 0;
    // The system's alert sound.
    virtual void playAlert() = 0;
    virtual void postAccessibilityNotification(SRAccessibilityNotification notification) = 0;
    // Shows a refused shortcut's error as a sheet on the view's window;
    // false when the view has no window.
    virtual bool presentErrorAsSheet(const SRValidationError& /*error*/) { return false; }
};

}  // namespace lirixkro
