#pragma once

#include <QAbstractNativeEventFilter>
#include <cstdint>

class QWidget;

namespace platform::qt::x11 {

// Qt draws a window as it hears that the window was mapped, and draws it all
// again for the exposure the server reports right after: two full repaints
// of every showing, each a copy of the whole window to the server and a
// wait for it. The exposure that follows a map is dropped here, the drawing
// made at the map having covered the whole window; later exposures (another
// window moved away from it, say) pass. Nothing where Qt doesn't run on X11.
class QtWindowExposure final : public QAbstractNativeEventFilter {
  public:
    explicit QtWindowExposure(QWidget& window);
    ~QtWindowExposure() override;
    QtWindowExposure(const QtWindowExposure&) = delete;
    QtWindowExposure& operator=(const QtWindowExposure&) = delete;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

  private:
    QWidget& window_;
    // Mapped, and the server's exposure of it not seen yet.
    bool justMapped_ = false;
};

}  // namespace platform::qt::x11
