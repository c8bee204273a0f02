#pragma once

#include <QAbstractNativeEventFilter>
#include <cstdint>
#include <memory>
#include <optional>

#include "views/OncePerTurn.h"

class QWidget;
class QWindow;

namespace platform::qt::x11 {

// A window manager keeps the active full-screen window above every other
// window, "always on top" ones included, and only the windows transient for
// it share its place. A panel shown over another program's window is
// therefore made transient for the window that is active as it shows, and
// for each window that becomes active while it is shown (a window of the
// same program put to full screen from the panel, say), and so stays above
// it, full screen or not. Nothing where Qt doesn't run on X11, and nothing
// for our own program's windows.
//
// The active window is followed from the root window's property changes and
// read without waiting, so that showing the panel asks the server nothing.
class PanelStacking final : public QAbstractNativeEventFilter {
  public:
    PanelStacking();
    ~PanelStacking() override;
    PanelStacking(const PanelStacking&) = delete;
    PanelStacking& operator=(const PanelStacking&) = delete;

    // Before the panel is shown.
    void stackAboveActiveWindow(QWidget& panel);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

  private:
    void askForActiveWindow();
    // The active window when it is another program's.
    std::optional<std::uintptr_t> othersActiveWindow();
    void followActiveWindow();

    QWidget* panel_ = nullptr;
    // The read of the root window's active window on its way, by its
    // sequence number; the answer, once collected.
    std::optional<unsigned int> pendingRead_;
    std::uint32_t active_ = 0;
    OncePerTurn follow_;
    // The stand-in for the other program's window the panel is transient for.
    std::unique_ptr<QWindow> activeWindow_;
};

}  // namespace platform::qt::x11
