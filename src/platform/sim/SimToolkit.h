#pragma once

#include <memory>
#include <vector>

#include "platform/Window.h"
#include "platform/sim/SimWindow.h"

namespace platform::sim {

// Makes the simulated desktop's windows and remembers them, so that a test
// can find the windows the program made.
class SimToolkit final : public Toolkit {
  public:
    std::shared_ptr<Window> makePanel() override;
    std::shared_ptr<Window> makeWindow(WindowStyleMask styleMask) override;

    // The windows made so far that still exist, oldest first.
    std::vector<std::shared_ptr<SimWindow>> windows() const;
    std::vector<std::shared_ptr<SimWindow>> visibleWindows() const;
    // The window that is key now, if any.
    std::shared_ptr<SimWindow> keyWindow() const;

  private:
    std::shared_ptr<SimWindow> make(SimWindow::Kind kind, WindowStyleMask styleMask);

    std::vector<std::weak_ptr<SimWindow>> windows_;
    std::shared_ptr<SimWindow::KeyFocus> focus_ = std::make_shared<SimWindow::KeyFocus>();
};

}  // namespace platform::sim
