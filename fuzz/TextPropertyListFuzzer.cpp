// Feeds arbitrary bytes to the reader of the old text form of property
// lists, as key binding files may be written. It gives a value or nothing,
// never a crash; a value it gives survives the binary form and back, and
// the keys of a dictionary go on into key binding shortcuts as the local
// monitor takes them.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "FuzzDesktop.h"
#include "platform/PropertyListCodec.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRTextPropertyList.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzing::installDesktopOnce();
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto value = lirixkro::SRReadTextPropertyList(text);
    if (!value)
        return 0;
    const auto binary = platform::PropertyListCodec::encodeBinary(*value);
    if (!platform::PropertyListCodec::decode(binary))
        std::abort();
    if (const auto* bindings = value->dictionary()) {
        for (const auto& [key, selectors] : *bindings)
            (void)lirixkro::SRShortcut::shortcutWithKeyBinding(key);
    }
    return 0;
}
