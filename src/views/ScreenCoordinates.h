#pragma once

#include <QPoint>
#include <QRect>

#include "platform/Geometry.h"

namespace platform::qt {

// Converts between Qt's desktop coordinates (origin at the top left of the
// primary screen, y downwards, whole pixels) and the program's (origin at
// the bottom left of the primary screen, y upwards, points).
class ScreenCoordinates {
  public:
    // The primary screen's geometry in Qt's coordinates.
    explicit ScreenCoordinates(QRect primaryScreen) : primary_(primaryScreen) {}
    // The primary screen of the running application; an empty one when there
    // is no screen.
    static ScreenCoordinates ofPrimaryScreen();

    CGRect toBottomLeft(const QRect& rect) const;
    // Where the top-left corner of a rectangle of the given height goes for
    // its bottom-left corner to be at origin.
    QPoint topLeftFor(CGPoint origin, int height) const;

  private:
    double bottom() const { return primary_.y() + primary_.height(); }

    QRect primary_;
};

}  // namespace platform::qt
