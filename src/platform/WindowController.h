#pragma once

#include <memory>

#include "platform/Window.h"

namespace platform {

// Owns one window and shows or closes it.
class WindowController {
  public:
    explicit WindowController(std::shared_ptr<Window> window) : window_(std::move(window)) {}

    const std::shared_ptr<Window>& window() const { return window_; }

    // Orders the window front; it becomes key unless it is a panel that only
    // becomes key when needed.
    void showWindow() {
        if (!window_)
            return;
        if (window_->becomesKeyOnlyIfNeeded()) {
            window_->orderFront();
        } else {
            window_->makeKeyAndOrderFront();
        }
    }

    void close() {
        if (window_)
            window_->close();
    }

  private:
    std::shared_ptr<Window> window_;
};

}  // namespace platform
