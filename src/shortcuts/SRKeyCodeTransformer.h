#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/KeyboardLayout.h"
#include "shortcuts/SRCommon.h"
#include "shortcuts/SRValue.h"

namespace lirixkro {

namespace detail {
class SRKeyCodeTranslator;
}

// Turns a key code into the text shown for it: one value in, one value out,
// nothing on failure. The base class has no form of its own; its members
// give the literal form (for people: "F5", "A", "↩") or the symbolic one (for
// matching and menus), on the current or on the ASCII-capable layout.
class SRKeyCodeTransformer {
  public:
    virtual ~SRKeyCodeTransformer() = default;
    SRKeyCodeTransformer(const SRKeyCodeTransformer&) = delete;
    SRKeyCodeTransformer& operator=(const SRKeyCodeTransformer&) = delete;

    // The shared symbolic transformer.
    static std::shared_ptr<const SRKeyCodeTransformer> sharedTransformer();
    // The base has no form: asking for one gives the symbolic transformer
    // (the shared one, or a new one on the given layout) and logs the misuse.
    static std::shared_ptr<const SRKeyCodeTransformer> make();
    static std::shared_ptr<const SRKeyCodeTransformer> makeWithInputSource(
        std::shared_ptr<platform::InputSource> inputSource);

    static const std::vector<SRKeyCode>& knownKeyCodes();

    std::shared_ptr<platform::InputSource> inputSource() const;

    std::optional<std::string> literalForKeyCode(SRKeyCode keyCode,
                                                 SRModifierFlags implicitModifierFlags,
                                                 SRModifierFlags explicitModifierFlags,
                                                 SRLayoutDirection direction) const;
    std::optional<std::string> symbolForKeyCode(SRKeyCode keyCode,
                                                SRModifierFlags implicitModifierFlags,
                                                SRModifierFlags explicitModifierFlags,
                                                SRLayoutDirection direction) const;

    // The full entry: the value must be a number, the key code. Implicit
    // flags change the translation (Shift-1 gives "!"); explicit flags are
    // those shown beside the key and only separate cached translations.
    virtual std::optional<std::string> transformedValue(const SRValue& value,
                                                        SRModifierFlags implicitModifierFlags,
                                                        SRModifierFlags explicitModifierFlags,
                                                        SRLayoutDirection direction) const;
    // A shortcut: its key code with its flags as explicit flags. Anything
    // else: the value as the key code, with no flags. Left to right.
    std::optional<std::string> transformedValue(const SRValue& value) const;

    static constexpr bool allowsReverseTransformation() { return false; }
    // Text back to a key code; only the ASCII members can.
    virtual std::optional<SRKeyCode> reverseTransformedValue(const SRValue& value) const;

  protected:
    enum class Form { literal, symbolic };

    explicit SRKeyCodeTransformer(std::shared_ptr<detail::SRKeyCodeTranslator> translator);

    // The entry the members share: an activity, the number check, the form.
    std::optional<std::string> transformKeyCode(const char* activity, Form form,
                                                const SRValue& value,
                                                SRModifierFlags implicitModifierFlags,
                                                SRModifierFlags explicitModifierFlags,
                                                SRLayoutDirection direction) const;

    detail::SRKeyCodeTranslator& translator() const { return *translator_; }

  private:
    std::shared_ptr<detail::SRKeyCodeTranslator> translator_;
};

}  // namespace lirixkro
