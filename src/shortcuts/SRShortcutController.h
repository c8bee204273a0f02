#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/Subscription.h"
#include "shortcuts/SRKeyValueObserving.h"
#include "shortcuts/SRShortcutAction.h"
#include "support/Signal.h"

namespace lirixkro {

class SRRecorderControl;

// An object controller whose content is a shortcut. It ties the content to
// a recorder control (the control's value is bound to "content"), and to
// the shared global monitor: with a target set it holds one action that
// follows the content and performs on that target.
//
// Beside "content" it offers the content in the forms menus and labels
// want, under the key paths "selection.keyEquivalent",
// "selection.literalKeyCode", "selection.symbolicKeyCode",
// "selection.literalASCIIKeyCode", "selection.symbolicASCIIKeyCode",
// "selection.keyEquivalentModifierMask", "selection.literalModifierFlags"
// and "selection.symbolicModifierFlags". While any of them is observed, a
// change of the keyboard layout is told as a change of them all.
class SRShortcutController : public SRKeyValueObservable,
                             public SREditorRegistration,
                             public std::enable_shared_from_this<SRShortcutController> {
  public:
    static std::shared_ptr<SRShortcutController> make(SRShortcutRef content = nullptr);
    ~SRShortcutController() override;
    SRShortcutController(const SRShortcutController&) = delete;
    SRShortcutController& operator=(const SRShortcutController&) = delete;

    SRShortcutRef content() const { return content_; }
    void setContent(SRShortcutRef content);

    std::shared_ptr<SRShortcutActionTarget> shortcutActionTarget() const {
        return shortcutActionTarget_.lock();
    }
    void setShortcutActionTarget(std::weak_ptr<SRShortcutActionTarget> target);
    const SRShortcutActionRef& shortcutAction() const { return shortcutAction_; }

    const std::shared_ptr<SRRecorderControl>& recorderControl() const { return recorderControl_; }
    void setRecorderControl(std::shared_ptr<SRRecorderControl> control);

    SRObservedValue valueForKeyPath(std::string_view keyPath) const override;
    // Only "content" can be set.
    void setValueForKeyPath(const SRObservedValue& value, std::string_view keyPath) override;
    platform::Subscription observeKeyPath(std::string_view keyPath,
                                          std::function<void()> changed) override;

    void objectDidBeginEditing(const void* editor) override;
    void objectDidEndEditing(const void* editor) override;
    bool isEditing() const { return editorCount_ > 0; }

  private:
    SRShortcutController() = default;
    void selectionObserverAdded();
    void selectionObserverRemoved();
    void emitSelectionChanges();
    void updateRecorderControlValueBinding(const std::shared_ptr<SRRecorderControl>& old);

    SRShortcutRef content_;
    std::weak_ptr<SRShortcutActionTarget> shortcutActionTarget_;
    SRShortcutActionRef shortcutAction_;
    std::shared_ptr<SRRecorderControl> recorderControl_;
    SRKeyPathSignals changes_;
    std::size_t selectionObservers_ = 0;
    platform::Subscription layoutChanges_;
    int editorCount_ = 0;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace lirixkro
