#pragma once

#include <QAbstractButton>
#include <QFontMetrics>
#include <array>
#include <optional>
#include <string>

#include "listwindow/ListWindowView.h"
#include "platform/Subscription.h"

class QLabel;

namespace platform::qt {

class TrafficLightButton;

// One window of the list as a borderless button over the whole row: a
// click anywhere but on the round buttons raises the window. The pointer
// over the row shows the buttons' symbols. The row draws what its ListRow
// computes, afresh whenever its state changes. As the list scrolls, a row
// widget draws one window after another.
class ListRowWidget final : public QAbstractButton {
    Q_OBJECT

  public:
    using ListRow = tarnwick::ListWindowView::ListRow;

    // Draws nothing until it is given a row.
    explicit ListRowWidget(tarnwick::ListWindowView::Coordinator& coordinator,
                           QWidget* parent = nullptr);
    ~ListRowWidget() override;

    // Draws this row from now on, with the pointer's hover as its VM says.
    void setRow(ListRow row);
    const ListRow& row() const { return *row_; }
    TrafficLightButton* button(std::size_t index) const { return buttons_.at(index); }
    QLabel* title() const { return title_; }

    // Reads the window's attributes again and draws what changed since the
    // last drawing; a row that looks the same is left alone.
    void redraw();

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void shortenTitle();

    std::optional<ListRow> row_;
    std::optional<ListRow::Drawing> drawn_;
    std::array<TrafficLightButton*, 3> buttons_{};
    QLabel* title_;
    platform::Subscription vmChanges_;
};

// The system font at the size of a list row.
QFont listRowFont();

// How wide a row's title is drawn, in its widest style: a row asks no
// more room than this.
class TitleMeasure {
  public:
    TitleMeasure();
    int operator()(const std::string& title) const;
    int operator()(const QString& title) const;

  private:
    QFontMetrics metrics_;
};

}  // namespace platform::qt
