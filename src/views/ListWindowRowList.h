#pragma once

#include <QScrollArea>
#include <cstddef>
#include <optional>
#include <unordered_set>
#include <vector>

#include "listwindow/ListWindowView.h"

namespace platform::qt {

class ListRowWidget;
class TitleMeasure;

// The window rows of the panel. Only the rows in sight, and a few either
// side, have widgets: a list of a thousand windows costs what a screenful
// costs. Rows have one height, so where each sits follows from its
// position alone, and the list's height from the count. A row keeps its
// widget, and the pointer's hover on it, for as long as it stays in sight;
// the widgets of rows that leave sight draw the rows that come into it.
// Beyond the height it is given the list scrolls, by the wheel and by
// dragging.
class ListWindowRowList final : public QScrollArea {
  public:
    using Row = tarnwick::ListWindowView::Row;
    using Coordinator = tarnwick::ListWindowView::ListRow::Coordinator;

    ListWindowRowList(Coordinator& coordinator, QWidget* parent);
    ~ListWindowRowList() override;

    // Shows these rows in this order. Rows in sight read their window
    // again when their key is in `redraw`, or every one when `redrawAll`
    // says so; the others are read when they come into sight.
    void apply(const std::vector<Row>& rows, const std::unordered_set<std::size_t>& redraw,
               bool redrawAll);

    // Gives the rows that are in sight now their widgets, after a scroll or
    // a change of the list's size.
    void redrawRowsInSight();

    // The tallest the list may be, for it scrolls beyond, and the width of
    // the window manager's frame around the panel, which a title leaves room
    // for on the screen.
    void setLimits(int maximumHeight, int frameWidth);

    // The rows that have widgets, in their order on screen.
    std::vector<ListRowWidget*> rows() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    // A row of the list and the width its title asks for.
    struct Entry {
        tarnwick::ListWindowView::WindowRef window;
        std::size_t id = 0;
        bool hasDivider = false;
        int titleWidth = 0;
    };
    // The widgets that draw one row in sight.
    struct Slot {
        std::size_t id = 0;
        ListRowWidget* row = nullptr;
        QWidget* divider = nullptr;
    };

    using ListRow = tarnwick::ListWindowView::ListRow;

    void updateEntries(const std::vector<Row>& rows,
                       const std::unordered_set<std::size_t>& retitled);
    void layOut(const std::unordered_set<std::size_t>* redraw, bool redrawAll);
    void keepReadingOrder();
    void measureWidestTitle();
    void noteTitleDrawn(std::size_t position, const ListRowWidget& row,
                        std::optional<TitleMeasure>& measure);
    std::pair<std::size_t, std::size_t> rangeInSight() const;
    Slot bind(std::size_t position);
    void place(const Slot& slot, std::size_t position) const;
    int listHeight() const;
    int titleRoom() const;
    void sizeChanged();
    bool dragScroll(QWidget* row, QEvent* event);

    Coordinator& coordinator_;
    QWidget* list_;
    std::vector<Entry> entries_;
    // The rows with widgets, in no particular order, and the widgets that
    // draw nothing now.
    std::vector<Slot> inSight_;
    std::vector<Slot> spare_;
    int widestTitle_ = 0;
    int maximumHeight_ = QWIDGETSIZE_MAX;
    int frameWidth_ = 0;
    QSize hinted_;
    bool layingOut_ = false;
    // A press on a row that became a drag.
    QPoint pressedAt_;
    int scrollAtPress_ = 0;
    bool dragging_ = false;
};

// Takes a widget out of the panel for good.
void retire(QWidget* widget);

}  // namespace platform::qt
