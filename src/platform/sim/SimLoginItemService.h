#pragma once

#include <string>
#include <vector>

#include "platform/LoginItemService.h"

namespace platform::sim {

// The login item of the simulated desktop: registering enables it unless a
// test makes the service fail.
class SimLoginItemService final : public LoginItemService {
  public:
    Status status() const override { return status_; }
    std::string registerMainApp() override;
    std::string unregisterMainApp() override;

    void setStatus(Status status) { status_ = status; }
    // A non-empty text makes the next calls fail with it and change nothing.
    void setFailure(std::string text) { failure_ = std::move(text); }
    // "register" and "unregister", in the order asked.
    const std::vector<std::string>& calls() const { return calls_; }

  private:
    std::string change(const char* call, Status status);

    Status status_ = Status::notRegistered;
    std::string failure_;
    std::vector<std::string> calls_;
};

}  // namespace platform::sim
