#include "views/TrafficLightButton.h"

#include <QPainter>

#include "views/PanelLayout.h"
#include "views/SystemSymbols.h"

namespace platform::qt {

using Color = tarnwick::ListWindowView::ListRow::Color;

QColor colorOf(Color color) {
    switch (color) {
        case Color::red:
            return titleBarColor::red();
        case Color::yellow:
            return titleBarColor::yellow();
        case Color::green:
            return titleBarColor::green();
    }
    return titleBarColor::red();
}

// The panel never takes keyboard focus, so the buttons don't ask for it.
TrafficLightButton::TrafficLightButton(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, [this] { runAction(); });
}

void TrafficLightButton::setButton(const tarnwick::ListWindowView::ListRow::TrafficButton& button) {
    action_ = button.action;
    symbol_ = QString::fromStdString(button.sfImage);
    color_ = colorOf(button.color);
    opacity_ = button.opacity;
    setAccessibleName(QString::fromStdString(button.accessibleName));
    setToolTip(accessibleName());
    update();
}

// The action may redraw the list, which takes this button away; it runs
// from a copy so that it outlives the button's own state.
void TrafficLightButton::runAction() const {
    const auto action = action_;
    if (action)
        action();
}

// A fixed size, a little under the row's line of text, like a symbol set
// in the text it stands beside.
QSize TrafficLightButton::sizeHint() const {
    return {panelLayout::trafficButtonSide, panelLayout::trafficButtonSide};
}

void TrafficLightButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setOpacity(opacity_);
    paintSymbol(painter, QRectF(rect()), symbol_, isDown() ? color_.darker(120) : color_);
}

}  // namespace platform::qt
