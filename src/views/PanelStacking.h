#pragma once

#include <memory>

class QWidget;
class QWindow;

namespace platform::qt::x11 {

// A window manager keeps the active full-screen window above every other
// window, "always on top" ones included, and only the windows transient for
// it share its place. A panel shown over another program's window is
// therefore made transient for the window that is active as it shows, and
// so stays above it, full screen or not. Keeps the stand-in for that window
// for as long as the panel is transient for it; nothing where Qt doesn't
// run on X11, and nothing when the active window is the panel's own
// program's.
class PanelStacking {
  public:
    PanelStacking();
    ~PanelStacking();
    PanelStacking(const PanelStacking&) = delete;
    PanelStacking& operator=(const PanelStacking&) = delete;

    // Before the panel is shown.
    void stackAboveActiveWindow(QWidget& panel);

  private:
    std::unique_ptr<QWindow> activeWindow_;
};

}  // namespace platform::qt::x11
