#pragma once

#include <functional>
#include <string>

namespace platform {

// Starting the program when the user logs in: the registration of the main
// application with the platform.
class LoginItemService {
  public:
    enum class Status { notRegistered, enabled, requiresApproval, notFound };
    // Empty on success, else the error's text.
    using Completion = std::function<void(const std::string& error)>;

    virtual ~LoginItemService() = default;
    virtual Status status() const = 0;
    // Synchronous: empty on success, else the error's text.
    virtual std::string registerMainApp() = 0;
    // Asynchronous: the completion runs on a later turn of the main loop,
    // never within the call.
    virtual void unregisterMainApp(Completion completion) = 0;
};

}  // namespace platform
