#pragma once

#include <QColor>
#include <QPainterPath>
#include <QRectF>
#include <QString>

class QPainter;

namespace platform::qt {

// The system symbols the program names, drawn by us so that they look the
// same on every desktop and stay sharp at any size. Each is one filled
// outline; the marks inside a filled circle or seal are cut out, so the
// background shows through them whatever its colour.

// Whether we draw a symbol of this name.
bool isDrawnSymbol(const QString& name);

// The symbol's outline in the largest square centred in bounds; empty for a
// name we don't draw.
QPainterPath symbolPath(const QString& name, const QRectF& bounds);

// Fills the symbol's outline in the colour, smoothly.
void paintSymbol(QPainter& painter, const QRectF& bounds, const QString& name, const QColor& color);

// The colours of a window's close, minimise and zoom buttons.
namespace titleBarColor {
QColor red();
QColor yellow();
QColor green();
}  // namespace titleBarColor

}  // namespace platform::qt
