#include "shortcuts/SRValidationError.h"

#include <mutex>

#include "support/Log.h"

namespace lirixkro {

namespace {

std::mutex presenterLock;

std::function<void(const SRValidationError&)>& presenter() {
    static std::function<void(const SRValidationError&)> installed;
    return installed;
}

}  // namespace

void SRPresentErrorByApplication(const SRValidationError& error) {
    std::function<void(const SRValidationError&)> present;
    {
        std::lock_guard lock(presenterLock);
        present = presenter();
    }
    if (present)
        present(error);
    else
        quillbox::Log::error(error.localizedDescription + " " + error.localizedFailureReason);
}

void SRSetApplicationErrorPresenter(std::function<void(const SRValidationError&)> newPresenter) {
    std::lock_guard lock(presenterLock);
    presenter() = std::move(newPresenter);
}

}  // namespace lirixkro
