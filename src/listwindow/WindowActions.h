#pragma once

#include <memory>

#include "accessibility/Application.h"

namespace tarnwick {

class ListWindowViewModel;

// The actions on one window that a row of the list offers. Each reads the
// window's attributes afresh, so it stays right if the window changed since
// the row was drawn. None throws, none touches the panel; a failure is at
// most one printed line. All but raising refresh the list afterwards, in
// every case, so a window that went away loses its row.
class WindowActions {
  public:
    using WindowRef = std::shared_ptr<corvane::Application::Window>;

    explicit WindowActions(ListWindowViewModel& model) : model_(model) {}

    // The application comes forward first, then the window.
    void raiseWindow(const WindowRef& window) const;
    // Presses the window's close button, if it has one.
    void closeWindow(const WindowRef& window) const;
    void toggleMinimized(const WindowRef& window) const;
    // Leaving full screen writes the attribute; entering presses the zoom
    // button, as the user would.
    void toggleFullScreen(const WindowRef& window) const;

  private:
    ListWindowViewModel& model_;
};

}  // namespace tarnwick
