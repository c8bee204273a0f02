#pragma once

#include <string>

namespace lirixkro {

// Why a shortcut was refused, worded so that it can be shown to the user.
struct SRValidationError {
    std::string domain = "NSCocoaErrorDomain";
    long code = 0;
    std::string localizedDescription;    // NSLocalizedDescriptionKey
    std::string localizedFailureReason;  // NSLocalizedFailureReasonErrorKey
};

}  // namespace lirixkro
