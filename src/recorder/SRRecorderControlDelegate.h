#pragma once

#include <optional>

#include "shortcuts/SRCommon.h"
#include "shortcuts/SRKeyValueObserving.h"
#include "shortcuts/SRValue.h"

namespace lirixkro {

class SRRecorderControl;

// What a recorder control asks and tells its delegate. Every operation is
// optional and has a current and a legacy form; the control asks the
// current form first. An answer of std::nullopt, and false from the
// telling operations, means "not offered".
class SRRecorderControlDelegate {
  public:
    virtual ~SRRecorderControlDelegate() = default;

    // May recording begin; true when neither form is offered.
    virtual std::optional<bool> recorderControlShouldBeginRecording(SRRecorderControl&) {
        return std::nullopt;
    }
    virtual std::optional<bool> lirixkroShouldBeginRecording(SRRecorderControl&) {
        return std::nullopt;
    }

    virtual void recorderControlDidBeginRecording(SRRecorderControl&) {}

    virtual bool recorderControlDidEndRecording(SRRecorderControl&) { return false; }
    virtual bool lirixkroDidEndRecording(SRRecorderControl&) { return false; }

    // May this shortcut be taken; true when none of the three is offered.
    virtual std::optional<bool> recorderControlCanRecordShortcut(SRRecorderControl&,
                                                                 const SRShortcut&) {
        return std::nullopt;
    }
    virtual std::optional<bool> lirixkroCanRecordShortcut(SRRecorderControl&, const SRDictionary&) {
        return std::nullopt;
    }
    virtual std::optional<bool> controlIsValidObject(SRRecorderControl&, const SRObservedValue&) {
        return std::nullopt;
    }

    // Permits flags that the control's rules forbid; false when neither form
    // is offered.
    virtual std::optional<bool> recorderControlShouldUnconditionallyAllowModifierFlags(
        SRRecorderControl&, SRModifierFlags, SRKeyCode) {
        return std::nullopt;
    }
    virtual std::optional<bool> lirixkroShouldUnconditionallyAllowModifierFlags(SRRecorderControl&,
                                                                                SRModifierFlags,
                                                                                SRKeyCode) {
        return std::nullopt;
    }
};

}  // namespace lirixkro
