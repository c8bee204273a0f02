// Desktop entries and the lists of default applications are files anyone
// can drop into a data directory: none may crash the reader.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/xdg/DesktopEntry.h"
#include "platform/xdg/DesktopEntryExec.h"
#include "platform/xdg/MimeApps.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    using namespace platform::xdg;
    if (const auto entry = DesktopEntry::parse(text, DesktopEntryLocale("sr_RS@latin"))) {
        desktopEntryCommandLine(entry->exec);
        desktopEntryProgramName(entry->exec);
    }
    MimeApps::parseList(text);
    desktopEntryCommandLine(text);
    return 0;
}
