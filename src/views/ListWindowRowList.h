#pragma once

#include <QPointer>
#include <QScrollArea>
#include <cstddef>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "listwindow/ListWindowView.h"

namespace platform::qt {

class ListRowWidget;

// The window rows of the panel, keyed by their window's identity. A new
// list of rows touches only the rows whose window appeared, went or was
// asked to be drawn again; the others keep their widgets and their hover
// state. Beyond the height it is given the list scrolls, by the wheel and
// by dragging.
class ListWindowRowList final : public QScrollArea {
  public:
    using Row = tarnwick::ListWindowView::Row;
    using Coordinator = tarnwick::ListWindowView::ListRow::Coordinator;

    ListWindowRowList(Coordinator& coordinator, QWidget* parent);
    ~ListWindowRowList() override;

    // Shows these rows in this order. Kept rows read their window again
    // when their key is in `redraw`, and, when `redrawAll` says so, every
    // row in sight; the others when they are scrolled into sight.
    void apply(const std::vector<Row>& rows, const std::unordered_set<std::size_t>& redraw,
               bool redrawAll);

    // Reads again the rows that came into sight since they were last
    // asked to; where they are is known once the list is laid out.
    void redrawRowsInSight();

    // The tallest the list may be; it scrolls beyond.
    void setMaximumListHeight(int height);

    // The rows in their order on screen.
    std::vector<ListRowWidget*> rows() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Slot {
        ListRowWidget* row = nullptr;
        QWidget* divider = nullptr;
    };

    Slot makeSlot(const Row& row);
    void dropSlot(const Slot& slot);
    void placeInOrder(const std::vector<std::size_t>& order, const std::vector<std::size_t>& kept);
    bool dragScroll(QWidget* row, QEvent* event);

    Coordinator& coordinator_;
    QWidget* list_;
    std::unordered_map<std::size_t, Slot> slots_;
    std::vector<std::size_t> order_;
    // Rows to read again once they come into sight.
    std::unordered_set<std::size_t> staleOutOfSight_;
    int maximumHeight_ = QWIDGETSIZE_MAX;
    // A press on a row that became a drag.
    QPoint pressedAt_;
    int scrollAtPress_ = 0;
    bool dragging_ = false;
};

// Takes a widget out of the panel for good.
void retire(QWidget* widget);

}  // namespace platform::qt
