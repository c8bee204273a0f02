#pragma once

#include <string>
#include <vector>

#include "platform/LoginItemService.h"
#include "platform/MainLoop.h"

namespace platform::sim {

// The login item of the simulated desktop: registering enables it unless a
// test makes the service fail. Unregistering completes on the next turn of
// the loop, as the platform's does, and changes the status only then.
class SimLoginItemService final : public LoginItemService {
  public:
    explicit SimLoginItemService(MainLoop& loop) : loop_(loop) {}

    Status status() const override { return status_; }
    std::string registerMainApp() override;
    void unregisterMainApp(Completion completion) override;

    void setStatus(Status status) { status_ = status; }
    // What a successful registration leaves; enabled unless a test says.
    void setStatusAfterRegistering(Status status) { registeredStatus_ = status; }
    // A non-empty text makes the next calls fail with it and change nothing.
    void setFailure(std::string text) { failure_ = std::move(text); }
    // "register" and "unregister", in the order asked.
    const std::vector<std::string>& calls() const { return calls_; }

  private:
    std::string change(Status status);

    MainLoop& loop_;
    Status status_ = Status::notRegistered;
    Status registeredStatus_ = Status::enabled;
    std::string failure_;
    std::vector<std::string> calls_;
};

}  // namespace platform::sim
