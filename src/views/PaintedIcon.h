#pragma once

#include <QColor>
#include <QIcon>
#include <QIconEngine>
#include <QString>
#include <functional>
#include <optional>

namespace platform::qt {

// An icon drawn by code at whatever size and pixel density it is asked
// for, so it is never a scaled bitmap.
class PaintedIconEngine final : public QIconEngine {
  public:
    // Paints the icon into the rectangle, in the colour given (for designs
    // of one colour; others may ignore it).
    using Painter = std::function<void(QPainter&, const QRectF&, const QColor&)>;

    // With no colour, the icon takes the text colour of the application's
    // palette when it is drawn, so it follows light and dark themes.
    PaintedIconEngine(QString name, Painter painter, std::optional<QColor> color = std::nullopt);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) override;
    QIconEngine* clone() const override;
    QString key() const override;
    QString iconName() override { return name_; }
    bool isNull() override { return false; }

  private:
    QColor colorFor(QIcon::Mode mode) const;

    QString name_;
    Painter painter_;
    std::optional<QColor> color_;
};

// A system symbol we draw ourselves; a null icon for one we don't.
QIcon symbolIcon(const QString& name, std::optional<QColor> color = std::nullopt);

// The status item's icon.
QIcon statusBarIcon();

}  // namespace platform::qt
