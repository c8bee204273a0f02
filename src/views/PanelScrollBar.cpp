#include "views/PanelScrollBar.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionSlider>
#include <algorithm>

namespace platform::qt {

namespace {

constexpr int handleAlpha = 90;
constexpr int pressedHandleAlpha = 150;
constexpr int arrowAlpha = 120;

// A small solid triangle in the middle of the arrow's square, pointing up
// or down.
void paintArrow(QPainter& painter, const QRectF& area, bool up, const QColor& color) {
    const double half = std::min(area.width(), area.height()) / 5;
    const QPointF centre = area.center();
    const double tip = up ? -half : half;
    QPainterPath arrow;
    arrow.moveTo(centre.x() - half, centre.y() - tip / 2);
    arrow.lineTo(centre.x() + half, centre.y() - tip / 2);
    arrow.lineTo(centre.x(), centre.y() + tip / 2);
    arrow.closeSubpath();
    painter.fillPath(arrow, color);
}

}  // namespace

PanelScrollBar::PanelScrollBar(QWidget* parent) : QScrollBar(Qt::Vertical, parent) {}

QRect PanelScrollBar::part(QStyle::SubControl control) const {
    QStyleOptionSlider option;
    initStyleOption(&option);
    return style()->subControlRect(QStyle::CC_ScrollBar, &option, control, this);
}

void PanelScrollBar::paintEvent(QPaintEvent*) {
    QColor ink = palette().color(QPalette::WindowText);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    const QRectF handle = QRectF(part(QStyle::SC_ScrollBarSlider)).adjusted(3, 1, -3, -1);
    ink.setAlpha(isSliderDown() ? pressedHandleAlpha : handleAlpha);
    const double radius = handle.width() / 2;
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawRoundedRect(handle, radius, radius);

    ink.setAlpha(arrowAlpha);
    paintArrow(painter, QRectF(part(QStyle::SC_ScrollBarSubLine)), true, ink);
    paintArrow(painter, QRectF(part(QStyle::SC_ScrollBarAddLine)), false, ink);
}

}  // namespace platform::qt
