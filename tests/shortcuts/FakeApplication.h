#pragma once

#include "platform/Application.h"

namespace lirixkro::testing {

// Just enough of an application object for the menu and layout direction.
class FakeApplication final : public platform::Application {
  public:
    platform::ActivationPolicy activationPolicy() const override { return policy_; }
    bool setActivationPolicy(platform::ActivationPolicy policy) override {
        policy_ = policy;
        return true;
    }
    void activate() override {}
    bool isActive() const override { return false; }
    std::shared_ptr<platform::Menu> mainMenu() const override { return mainMenu_; }
    void setMainMenu(std::shared_ptr<platform::Menu> menu) override { mainMenu_ = std::move(menu); }
    platform::UserInterfaceLayoutDirection userInterfaceLayoutDirection() const override {
        return direction;
    }
    void terminate() override {}

    platform::UserInterfaceLayoutDirection direction =
        platform::UserInterfaceLayoutDirection::leftToRight;

  private:
    platform::ActivationPolicy policy_ = platform::ActivationPolicy::accessory;
    std::shared_ptr<platform::Menu> mainMenu_;
};

}  // namespace lirixkro::testing
