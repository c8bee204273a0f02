#pragma once

#include <QAbstractButton>
#include <QColor>
#include <functional>

#include "listwindow/ListWindowView.h"

namespace platform::qt {

// One round title-bar button of a list row: its symbol in its colour,
// faint when the window's own button is disabled. Faintness is drawing
// alone: a click runs the action all the same.
class TrafficLightButton final : public QAbstractButton {
    Q_OBJECT

  public:
    explicit TrafficLightButton(QWidget* parent = nullptr);

    void setButton(const tarnwick::ListWindowView::ListRow::TrafficButton& button);

    QString symbol() const { return symbol_; }
    QColor color() const { return color_; }
    double opacity() const { return opacity_; }

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void runAction() const;

    std::function<void()> action_;
    QString symbol_;
    QColor color_;
    double opacity_ = 1.0;
};

QColor colorOf(tarnwick::ListWindowView::ListRow::Color color);

}  // namespace platform::qt
