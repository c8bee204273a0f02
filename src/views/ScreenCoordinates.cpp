#include "views/ScreenCoordinates.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>

namespace platform::qt {

ScreenCoordinates ScreenCoordinates::ofPrimaryScreen() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return ScreenCoordinates(screen ? screen->geometry() : QRect());
}

double ScreenCoordinates::pixelsPerPoint() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->devicePixelRatio() : 1.0;
}

CGRect ScreenCoordinates::toBottomLeft(const QRect& rect) const {
    const double x = rect.x() - primary_.x();
    const double y = bottom() - (rect.y() + rect.height());
    return CGRect{{x, y}, {double(rect.width()), double(rect.height())}};
}

QPoint ScreenCoordinates::topLeftFor(CGPoint origin, int height) const {
    const double left = origin.x + primary_.x();
    const double top = bottom() - origin.y - height;
    return QPoint(static_cast<int>(std::lround(left)), static_cast<int>(std::lround(top)));
}

}  // namespace platform::qt
