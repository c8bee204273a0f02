#include "platform/x11/XkbInputSource.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <array>

#include "platform/x11/KeyCodeTable.h"

namespace platform::x11 {

namespace {

xkb_mod_mask_t maskOfModifier(xkb_keymap* keymap, const char* name) {
    const xkb_mod_index_t index = xkb_keymap_mod_get_index(keymap, name);
    return index == XKB_MOD_INVALID ? 0 : xkb_mod_mask_t{1} << index;
}

xkb_keycode_t keyGivingSymbol(xkb_keymap* keymap, xkb_layout_index_t group, xkb_keysym_t symbol) {
    for (xkb_keycode_t key = xkb_keymap_min_keycode(keymap); key <= xkb_keymap_max_keycode(keymap);
         ++key) {
        const xkb_keysym_t* symbols = nullptr;
        const int count = xkb_keymap_key_get_syms_by_level(keymap, key, group, 0, &symbols);
        for (int i = 0; i < count; ++i) {
            if (symbols[i] == symbol)
                return key;
        }
    }
    return XKB_KEYCODE_INVALID;
}

// The real modifiers that the layout's third-level key sets, found by
// pressing it in a scratch state; nothing when the layout has no such key.
xkb_mod_mask_t levelThreeMask(xkb_keymap* keymap, xkb_layout_index_t group) {
    const xkb_keycode_t key = keyGivingSymbol(keymap, group, XKB_KEY_ISO_Level3_Shift);
    if (key == XKB_KEYCODE_INVALID)
        return 0;
    xkb_state* state = xkb_state_new(keymap);
    if (!state)
        return 0;
    xkb_state_update_mask(state, 0, 0, 0, 0, 0, group);
    xkb_state_update_key(state, key, XKB_KEY_DOWN);
    const xkb_mod_mask_t mask = xkb_state_serialize_mods(state, XKB_STATE_MODS_DEPRESSED);
    xkb_state_unref(state);
    return mask;
}

}  // namespace

XkbContextRef makeXkbContext() {
    return XkbContextRef(xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref);
}

XkbKeymapRef adoptXkbKeymap(xkb_keymap* keymap) {
    if (!keymap)
        return nullptr;
    return XkbKeymapRef(keymap, xkb_keymap_unref);
}

XkbInputSource::XkbInputSource(XkbKeymapRef keymap, xkb_layout_index_t group,
                               std::string identifier)
    : keymap_(std::move(keymap)), group_(group), identifier_(std::move(identifier)) {
    shiftMask_ = maskOfModifier(keymap_.get(), XKB_MOD_NAME_SHIFT);
    capsLockMask_ = maskOfModifier(keymap_.get(), XKB_MOD_NAME_CAPS);
    optionMask_ = levelThreeMask(keymap_.get(), group_);
    state_ = xkb_state_new(keymap_.get());
}

XkbInputSource::XkbInputSource(XkbKeymapRef keymap, xkb_layout_index_t group,
                               std::shared_ptr<const XkbGroupIdentifiers> identifiers)
    : XkbInputSource(std::move(keymap), group, std::string()) {
    identifiers_ = std::move(identifiers);
}

XkbInputSource::~XkbInputSource() {
    if (state_)
        xkb_state_unref(state_);
}

xkb_mod_mask_t XkbInputSource::maskFor(std::uint32_t modifierState) const {
    xkb_mod_mask_t mask = 0;
    if (modifierState & keyModifierState::shift)
        mask |= shiftMask_;
    if (modifierState & keyModifierState::option)
        mask |= optionMask_;
    return mask;
}

KeyTranslation XkbInputSource::translate(KeyCode keyCode, std::uint32_t modifierState) const {
    const auto xKeyCode = KeyCodeTable::xKeyCodeFor(keyCode);
    if (!xKeyCode)
        return KeyTranslation{unknownKeyStatus, {}};
    return translateXKeyCode(*xKeyCode, modifierState);
}

KeyTranslation XkbInputSource::translateXKeyCode(xkb_keycode_t xKeyCode,
                                                 std::uint32_t modifierState) const {
    if (!state_ || !xkb_keymap_key_get_name(keymap_.get(), xKeyCode)) {
        return KeyTranslation{unknownKeyStatus, {}};
    }
    // Control and Command are left out on purpose: they choose shortcuts,
    // not characters.
    const xkb_mod_mask_t locked = (modifierState & keyModifierState::capsLock) ? capsLockMask_ : 0;
    std::array<char, 64> buffer{};
    int length = 0;
    {
        std::lock_guard lock(mutex_);
        xkb_state_update_mask(state_, maskFor(modifierState), 0, locked, 0, 0, group_);
        length = xkb_state_key_get_utf8(state_, xKeyCode, buffer.data(), buffer.size());
    }
    if (length <= 0)
        return KeyTranslation{};
    return KeyTranslation{0, std::string(buffer.data(), static_cast<std::size_t>(length))};
}

bool XkbInputSource::isLatin(xkb_keymap* keymap, xkb_layout_index_t group) {
    // The 26 letter keys of the alphanumeric block.
    constexpr std::array<xkb_keycode_t, 26> letterKeys = {24, 25, 26, 27, 28, 29, 30, 31, 32,
                                                          33, 38, 39, 40, 41, 42, 43, 44, 45,
                                                          46, 52, 53, 54, 55, 56, 57, 58};
    // A few letter keys may carry national letters (ı, ñ) in a Latin layout.
    constexpr int requiredLatinLetters = 20;
    int latin = 0;
    for (xkb_keycode_t key : letterKeys) {
        const xkb_keysym_t* symbols = nullptr;
        if (xkb_keymap_key_get_syms_by_level(keymap, key, group, 0, &symbols) < 1)
            continue;
        const xkb_keysym_t symbol = symbols[0];
        if ((symbol >= XKB_KEY_a && symbol <= XKB_KEY_z) ||
            (symbol >= XKB_KEY_A && symbol <= XKB_KEY_Z)) {
            ++latin;
        }
    }
    return latin >= requiredLatinLetters;
}

}  // namespace platform::x11
