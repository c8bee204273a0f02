#pragma once

#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "platform/KeyboardLayout.h"
#include "platform/x11/XkbLayoutNames.h"

namespace platform::x11 {

using XkbContextRef = std::shared_ptr<xkb_context>;
using XkbKeymapRef = std::shared_ptr<xkb_keymap>;

XkbContextRef makeXkbContext();
// Takes over the caller's reference; null stays null.
XkbKeymapRef adoptXkbKeymap(xkb_keymap* keymap);

// One layout group of an xkb keymap as an input source. It keeps its keymap
// alive, so a source handed out before a layout change still translates as
// the old layout did.
class XkbInputSource final : public InputSource {
  public:
    // Returned when the key code has no key on this keyboard.
    static constexpr std::int32_t unknownKeyStatus = -50;

    XkbInputSource(XkbKeymapRef keymap, xkb_layout_index_t group, std::string identifier);
    // Named by the keymap's identifiers when first asked.
    XkbInputSource(XkbKeymapRef keymap, xkb_layout_index_t group,
                   std::shared_ptr<const XkbGroupIdentifiers> identifiers);
    ~XkbInputSource() override;
    XkbInputSource(const XkbInputSource&) = delete;
    XkbInputSource& operator=(const XkbInputSource&) = delete;

    std::optional<std::string> identifier() const override {
        return identifiers_ ? identifiers_->of(group_) : identifier_;
    }
    KeyTranslation translate(KeyCode keyCode, std::uint32_t modifierState) const override;
    // The same for a key given by its X keycode.
    KeyTranslation translateXKeyCode(xkb_keycode_t xKeyCode, std::uint32_t modifierState) const;

    xkb_layout_index_t group() const { return group_; }
    const XkbKeymapRef& keymap() const { return keymap_; }

    // Whether the group types Latin letters on the letter keys.
    static bool isLatin(xkb_keymap* keymap, xkb_layout_index_t group);

  private:
    xkb_mod_mask_t maskFor(std::uint32_t modifierState) const;

    XkbKeymapRef keymap_;
    xkb_layout_index_t group_;
    std::string identifier_;
    std::shared_ptr<const XkbGroupIdentifiers> identifiers_;
    xkb_mod_mask_t shiftMask_ = 0;
    xkb_mod_mask_t capsLockMask_ = 0;
    xkb_mod_mask_t optionMask_ = 0;
    mutable std::mutex mutex_;
    xkb_state* state_ = nullptr;
};

}  // namespace platform::x11
