#pragma once

#include <QPoint>
#include <QRect>

#include "platform/Geometry.h"

namespace platform::qt {

// Converts between Qt's desktop coordinates (origin at the top left of the
// primary screen, y downwards, whole pixels) and the program's (origin at
// the bottom left of the primary screen, y upwards, points). Qt's pixels
// are points already: Qt scales them to the display's device pixels
// (QT_SCALE_FACTOR, Xft.dpi) by pixelsPerPoint().
class ScreenCoordinates {
  public:
    // The primary screen's geometry in Qt's coordinates.
    explicit ScreenCoordinates(QRect primaryScreen) : primary_(primaryScreen) {}
    // The primary screen of the running application; an empty one when there
    // is no screen.
    static ScreenCoordinates ofPrimaryScreen();
    // The display's device pixels per point, as Qt scales the primary
    // screen; one when there is no screen. What the window system tells in
    // device pixels is divided by it.
    static double pixelsPerPoint();

    CGRect toBottomLeft(const QRect& rect) const;
    // Where the top-left corner of a rectangle of the given height goes for
    // its bottom-left corner to be at origin.
    QPoint topLeftFor(CGPoint origin, int height) const;

  private:
    double bottom() const { return primary_.y() + primary_.height(); }

    QRect primary_;
};

}  // namespace platform::qt
