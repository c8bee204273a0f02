#pragma once

#include <QScrollBar>
#include <QStyle>

namespace platform::qt {

// The panel's scroll bar: a slim rounded handle over the panel's own
// background, with small arrows at its ends. It works like any scroll bar;
// only its drawing is its own, a few flat shapes, because the style's
// shaded drawing cost as much as the rows in sight each time a window came
// or went while the panel was up.
class PanelScrollBar final : public QScrollBar {
  public:
    explicit PanelScrollBar(QWidget* parent = nullptr);

    // Where a part is: where the style places it, so that presses hit what
    // is drawn.
    QRect part(QStyle::SubControl control) const;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace platform::qt
