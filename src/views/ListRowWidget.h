#pragma once

#include <QAbstractButton>
#include <array>
#include <optional>

#include "listwindow/ListWindowView.h"
#include "platform/Subscription.h"

class QLabel;

namespace platform::qt {

class TrafficLightButton;

// One window of the list as a borderless button over the whole row: a
// click anywhere but on the round buttons raises the window. The pointer
// over the row shows the buttons' symbols. The row draws what its ListRow
// computes, afresh whenever its state changes.
class ListRowWidget final : public QAbstractButton {
    Q_OBJECT

  public:
    using ListRow = tarnwick::ListWindowView::ListRow;

    ListRowWidget(ListRow row, tarnwick::ListWindowView::Coordinator& coordinator,
                  QWidget* parent = nullptr);
    ~ListRowWidget() override;

    const ListRow& row() const { return row_; }
    TrafficLightButton* button(std::size_t index) const { return buttons_.at(index); }
    QLabel* title() const { return title_; }

    // Reads the window's attributes again and draws what changed since the
    // last drawing; a row that looks the same is left alone.
    void redraw();
    void shortenTitle();

  protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    // So that the panel is never wider than the work area of its screen.
    int widestTitle() const;

    ListRow row_;
    std::optional<ListRow::Drawing> drawn_;
    std::array<TrafficLightButton*, 3> buttons_{};
    QLabel* title_;
    platform::Subscription vmChanges_;
};

// The system font at the size of a list row.
QFont listRowFont();

}  // namespace platform::qt
