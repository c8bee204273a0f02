// Key binding texts, key equivalents and key names of any shape: every path
// from text to shortcut must give a shortcut or nothing, never a crash.
#include <cstddef>
#include <cstdint>
#include <string>

#include "FuzzDesktop.h"
#include "platform/Platform.h"
#include "platform/sim/SimKeyboardLayouts.h"
#include "platform/sim/SimMainLoop.h"
#include "shortcuts/SRASCIILiteralKeyCodeTransformer.h"
#include "shortcuts/SRASCIISymbolicKeyCodeTransformer.h"
#include "shortcuts/SRKeyBindingTransformer.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRShortcutFormatter.h"
#include "shortcuts/SRSymbolicModifierFlagsTransformer.h"

using fuzzing::installDesktopOnce;

namespace {}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto& layouts = installDesktopOnce();
    if (size == 0)
        return 0;
    // The first byte picks the layout, so that every layout's reverse map is
    // met.
    const char* identifiers[] = {
        platform::sim::layoutIdentifier::us, platform::sim::layoutIdentifier::german,
        platform::sim::layoutIdentifier::french, platform::sim::layoutIdentifier::russian};
    layouts.selectLayout(identifiers[data[0] % 4]);
    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);

    using namespace lirixkro;
    if (auto shortcut = SRShortcut::shortcutWithKeyBinding(text)) {
        (void)SRKeyBindingTransformer::sharedTransformer()->reverseTransformedValue(shortcut);
        (void)shortcut->description();
    }
    if (auto shortcut = SRShortcut::shortcutWithKeyEquivalent(text)) {
        (void)shortcut->readableStringRepresentation(false);
        (void)shortcut->isEqualToKeyEquivalent(text, shortcut->modifierFlags());
    }
    (void)SRASCIILiteralKeyCodeTransformer::sharedTransformer()->reverseTransformedValue(text);
    (void)SRASCIISymbolicKeyCodeTransformer::sharedTransformer()->reverseTransformedValue(text);
    (void)SRSymbolicModifierFlagsTransformer::sharedTransformer()->reverseTransformedValue(text);
    SRShortcutRef read;
    (void)SRShortcutFormatter().getObjectValue(&read, text, nullptr);
    return 0;
}
