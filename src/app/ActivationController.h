#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "platform/Application.h"
#include "platform/Window.h"

namespace tarnwick {

// The policy's text in log lines.
std::string debugDescription(platform::ActivationPolicy policy);

// Keeps the program an accessory while none of its ordinary windows
// (Settings, About, onboarding) is open, and a regular application while one
// is, so that those windows come to the front like any other.
class ActivationController {
  public:
    using OpenWindows =
        std::unordered_map<const platform::Window*, std::shared_ptr<platform::Window>>;

    // Aligns the application's policy with the open windows: regular while
    // any is open, else the stored policy.
    void updateActivationPolicy();
    // Makes the window the key window of an active, regular application.
    void bringToFront(const std::shared_ptr<platform::Window>& window);
    // Forgets a window by its identity (the window tear-down of its
    // coordinator).
    void removeOpenWindow(const platform::Window* window) { openWindows_.erase(window); }

    const OpenWindows& openWindows() const { return openWindows_; }

  private:
    OpenWindows openWindows_;
};

}  // namespace tarnwick
