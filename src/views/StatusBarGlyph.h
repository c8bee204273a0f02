#pragma once

#include <QRectF>

class QPainter;

namespace platform::qt {

// The program's status item glyph: a small panel listing windows, each row
// a dot and a line. A light card with a dark rim and dark rows, so that it
// stands out on light and on dark panels alike and reads the same in
// black and white.
void paintStatusBarGlyph(QPainter& painter, const QRectF& bounds);

}  // namespace platform::qt
