#pragma once

#include <memory>

#include "platform/Window.h"

namespace tarnwick {

class CoordinatorProtocol;

// Turns the closing of a window into the end of its coordinator, one turn of
// the main loop later.
class WindowDelegateForCoordinatorFinish final
    : public platform::WindowDelegate,
      public std::enable_shared_from_this<WindowDelegateForCoordinatorFinish> {
  public:
    void setParent(std::weak_ptr<CoordinatorProtocol> parent) { parent_ = std::move(parent); }
    std::shared_ptr<CoordinatorProtocol> parent() const { return parent_.lock(); }

    void windowWillClose(platform::Window* window) override;

  private:
    std::weak_ptr<CoordinatorProtocol> parent_;
};

}  // namespace tarnwick
