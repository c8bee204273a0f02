#pragma once

#include <memory>

#include "platform/Window.h"

namespace platform::qt {

class QtApplication;

// Makes our windows as Qt widgets. With an application object, every window
// gets the desktop properties of its activation policy before it shows.
class QtToolkit final : public Toolkit {
  public:
    explicit QtToolkit(QtApplication* application = nullptr) : application_(application) {}

    std::shared_ptr<Window> makePanel() override;
    std::shared_ptr<Window> makeWindow(WindowStyleMask styleMask) override;

  private:
    QtApplication* application_;
};

}  // namespace platform::qt
