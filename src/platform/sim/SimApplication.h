#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "platform/Application.h"
#include "platform/sim/SimWorkspace.h"

namespace platform::sim {

// The program itself on the simulated desktop. It is active while its own
// entry in the workspace is the frontmost application, so activating it
// tells the workspace's frontmost observers, and another application coming
// to the front deactivates it.
class SimApplication final : public Application {
  public:
    explicit SimApplication(SimWorkspace& workspace);

    ActivationPolicy activationPolicy() const override { return policy_; }
    bool setActivationPolicy(ActivationPolicy policy) override;
    void activate() override;
    bool isActive() const override;
    std::shared_ptr<Menu> mainMenu() const override { return mainMenu_; }
    void setMainMenu(std::shared_ptr<Menu> menu) override { mainMenu_ = std::move(menu); }
    void terminate() override;
    OperatingSystemVersion operatingSystemVersion() const override { return version_; }

    // Inspection and scripting.
    void setOperatingSystemVersion(OperatingSystemVersion version) { version_ = version; }
    // Every policy set, in order, including repeats.
    const std::vector<ActivationPolicy>& policyHistory() const { return policyHistory_; }
    std::size_t activateCount() const { return activateCount_; }
    bool isTerminated() const { return terminateCount_ > 0; }
    std::size_t terminateCount() const { return terminateCount_; }
    // Runs on terminate(), after it is recorded; --simulate ends its event
    // loop here.
    void setTerminateHandler(std::function<void()> handler) {
        terminateHandler_ = std::move(handler);
    }

  private:
    SimWorkspace& workspace_;
    ActivationPolicy policy_ = ActivationPolicy::regular;
    std::vector<ActivationPolicy> policyHistory_;
    std::shared_ptr<Menu> mainMenu_;
    std::size_t activateCount_ = 0;
    std::size_t terminateCount_ = 0;
    std::function<void()> terminateHandler_;
    OperatingSystemVersion version_ = tabbedSettingsVersion;
};

}  // namespace platform::sim
