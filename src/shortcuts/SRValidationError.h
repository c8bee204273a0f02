#pragma once

#include <functional>
#include <string>

namespace lirixkro {

// Why a shortcut was refused, worded so that it can be shown to the user.
struct SRValidationError {
    std::string domain = "NSCocoaErrorDomain";
    long code = 0;
    std::string localizedDescription;    // NSLocalizedDescriptionKey
    std::string localizedFailureReason;  // NSLocalizedFailureReasonErrorKey
};

// Shows an error to the user the application's ordinary way. The views
// install the presenter; without one the error goes to the log.
void SRPresentErrorByApplication(const SRValidationError& error);
void SRSetApplicationErrorPresenter(std::function<void(const SRValidationError&)> presenter);

}  // namespace lirixkro
