// Feeds arbitrary bytes to the preference file's reader. Whatever it
// accepts must also survive being written back and read again, as the
// store does with every change.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/PropertyListCodec.h"
#include "platform/xdg/PlistFileStore.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    auto values = platform::xdg::PlistFileStore::parse(bytes);
    if (!values)
        return 0;
    const auto written = platform::PropertyListCodec::encodeBinary(platform::PropertyList(*values));
    const std::string_view rewritten(reinterpret_cast<const char*>(written.data()), written.size());
    if (!platform::xdg::PlistFileStore::parse(rewritten))
        std::abort();
    return 0;
}
