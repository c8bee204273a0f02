// Any text given as an e-mail address must be accepted with a support level
// or refused with one of the two errors, never crash; an accepted address
// must survive being stored and read back.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "support/EmailAddress.h"
#include "support/EmailErrors.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    // The first byte says whether a top-level domain is required.
    const bool requireTLD = data[0] & 1;
    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
    try {
        const quillbox::EmailAddress address(text, requireTLD);
        using Coding = quillbox::Coding<quillbox::EmailAddress>;
        if (!(Coding::decode(Coding::encode(address)) == address))
            std::abort();
    } catch (const quillbox::EmailError&) {
    } catch (const quillbox::DomainError&) {
    }
    return 0;
}
