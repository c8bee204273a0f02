#include "views/StatusBarGlyph.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>

namespace platform::qt {

namespace {

// The design's grid: 22 units square, the usual size of a status item.
constexpr double gridSize = 22.0;

const QColor ink(0x1E, 0x1E, 0x1E);
const QColor card(0xF8, 0xF8, 0xF8);

void paintRow(QPainter& painter, double y, double thickness) {
    painter.setBrush(ink);
    painter.drawEllipse(QPointF(6.6, y), 1.3, 1.3);
    painter.drawRoundedRect(QRectF(9.4, y - thickness / 2, 7.6, thickness), thickness / 2,
                            thickness / 2);
}

}  // namespace

void paintStatusBarGlyph(QPainter& painter, const QRectF& bounds) {
    const double side = std::min(bounds.width(), bounds.height());
    if (side <= 0)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(bounds.center() - QPointF(side / 2, side / 2));
    painter.scale(side / gridSize, side / gridSize);

    painter.setPen(QPen(ink, 1.5));
    painter.setBrush(card);
    painter.drawRoundedRect(QRectF(2.75, 3.75, 16.5, 14.5), 3.2, 3.2);

    painter.setPen(Qt::NoPen);
    // The first row stands for the main window, drawn bold in the list.
    paintRow(painter, 7.9, 2.0);
    paintRow(painter, 11.0, 1.5);
    paintRow(painter, 14.1, 1.5);
    painter.restore();
}

}  // namespace platform::qt
