#pragma once

#include <string>

namespace platform {

// Starting the program when the user logs in.
class LoginItemService {
  public:
    enum class Status { notRegistered, enabled, requiresApproval, notFound };

    virtual ~LoginItemService() = default;
    virtual Status status() const = 0;
    // Empty on success, else the error's text.
    virtual std::string registerMainApp() = 0;
    virtual std::string unregisterMainApp() = 0;
};

}  // namespace platform
