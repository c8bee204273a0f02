#include "views/PaintedIcon.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

#include "views/StatusBarGlyph.h"
#include "views/SystemSymbols.h"

namespace platform::qt {

PaintedIconEngine::PaintedIconEngine(QString name, Painter painter, std::optional<QColor> color)
    : name_(std::move(name)), painter_(std::move(painter)), color_(color) {}

QColor PaintedIconEngine::colorFor(QIcon::Mode mode) const {
    const QPalette palette = QGuiApplication::palette();
    QColor color = color_.value_or(
        palette.color(mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::WindowText));
    if (mode == QIcon::Disabled)
        color.setAlphaF(color.alphaF() * 0.4f);
    return color;
}

void PaintedIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
                              QIcon::State) {
    painter_(*painter, QRectF(rect), colorFor(mode));
}

QPixmap PaintedIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    return scaledPixmap(size, mode, state, 1.0);
}

// Qt asks with the size in device pixels already.
QPixmap PaintedIconEngine::scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                                        qreal scale) {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    {
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), pixmap.size()), mode, state);
    }
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
}

QIconEngine* PaintedIconEngine::clone() const {
    return new PaintedIconEngine(name_, painter_, color_);
}

QString PaintedIconEngine::key() const {
    return QStringLiteral("tarnwick.painted");
}

QIcon symbolIcon(const QString& name, std::optional<QColor> color) {
    if (!isDrawnSymbol(name))
        return QIcon();
    return QIcon(new PaintedIconEngine(
        name,
        [name](QPainter& painter, const QRectF& bounds, const QColor& paintColor) {
            paintSymbol(painter, bounds, name, paintColor);
        },
        color));
}

QIcon statusBarIcon() {
    return QIcon(new PaintedIconEngine(QStringLiteral("StatusBarIcon"),
                                       [](QPainter& painter, const QRectF& bounds, const QColor&) {
                                           paintStatusBarGlyph(painter, bounds);
                                       }));
}

}  // namespace platform::qt
