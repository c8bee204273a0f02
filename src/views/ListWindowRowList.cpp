#include "views/ListWindowRowList.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include "views/ListRowWidget.h"
#include "views/PanelLayout.h"

namespace platform::qt {

namespace {

using namespace panelLayout;

// A hairline in a faint shade of the text colour, so that it shows on light
// and dark panels alike.
class Divider final : public QWidget {
  public:
    explicit Divider(QWidget* parent) : QWidget(parent) {
        setObjectName(QStringLiteral("divider"));
        setFixedHeight(dividerHeight);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QColor line = palette().color(QPalette::WindowText);
        line.setAlphaF(0.15f);
        QPainter(this).fillRect(rect(), line);
    }
};

// Past this many rows gone at once, the memory they held is given back to
// the system rather than kept for rows that may never come again.
constexpr std::size_t manyRows = 100;

void giveBackMemorySoon(QObject* context) {
#if defined(__GLIBC__)
    // After the rows' deferred deletion, which was asked for first.
    QMetaObject::invokeMethod(
        context, [] { malloc_trim(0); }, Qt::QueuedConnection);
#else
    (void)context;
#endif
}

// A widget's showing asked for in so many words: a child added to a shown
// list would otherwise show itself a turn later, whatever it was told.
void setShown(QWidget* widget, bool shown) {
    if (widget->isHidden() == shown || !widget->testAttribute(Qt::WA_WState_ExplicitShowHide))
        widget->setVisible(shown);
}

}  // namespace

// Taken out of the panel at once and deleted once control is back in the
// event loop: it may be the sender of the change that removed it, in the
// middle of a click.
void retire(QWidget* widget) {
    if (!widget)
        return;
    widget->hide();
    if (auto* parent = widget->parentWidget(); parent && parent->layout())
        parent->layout()->removeWidget(widget);
    widget->setParent(nullptr);
    widget->deleteLater();
}

ListWindowRowList::ListWindowRowList(Coordinator& coordinator, QWidget* parent)
    : QScrollArea(parent), coordinator_(coordinator), list_(new QWidget) {
    setObjectName(QStringLiteral("windowListScroller"));
    list_->setObjectName(QStringLiteral("windowList"));
    auto* layout = new QVBoxLayout(list_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(rowSpacing);
    layout->setAlignment(Qt::AlignTop);
    // The panel's own background shows through.
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setWidgetResizable(true);
    setWidget(list_);
    list_->installEventFilter(this);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { redrawRowsInSight(); });
    viewport()->setAutoFillBackground(false);
    list_->setAutoFillBackground(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

ListWindowRowList::~ListWindowRowList() = default;

std::vector<ListRowWidget*> ListWindowRowList::rows() const {
    std::vector<ListRowWidget*> result;
    result.reserve(order_.size());
    for (auto id : order_)
        result.push_back(slots_.at(id).row);
    return result;
}

ListWindowRowList::Slot ListWindowRowList::makeSlot(const Row& row) {
    Slot slot;
    slot.row = new ListRowWidget(
        tarnwick::ListWindowView::ListRow(
            row.window, coordinator_, std::make_shared<tarnwick::ListWindowView::ListRow::VM>()),
        coordinator_, list_);
    slot.row->installEventFilter(this);
    setShown(slot.row, true);
    slot.divider = new Divider(list_);
    return slot;
}

void ListWindowRowList::dropSlot(const Slot& slot) {
    retire(slot.row);
    retire(slot.divider);
}

void ListWindowRowList::apply(const std::vector<Row>& rows,
                              const std::unordered_set<std::size_t>& redraw, bool redrawAll) {
    std::unordered_set<std::size_t> wanted;
    wanted.reserve(rows.size());
    for (const auto& row : rows)
        wanted.insert(row.id);

    std::vector<std::size_t> kept;
    kept.reserve(order_.size());
    for (auto id : order_) {
        if (wanted.count(id)) {
            kept.push_back(id);
        } else {
            dropSlot(slots_.at(id));
            slots_.erase(id);
        }
    }
    if (order_.size() - kept.size() >= manyRows)
        giveBackMemorySoon(this);

    std::vector<std::size_t> order;
    order.reserve(rows.size());
    for (const auto& row : rows) {
        auto found = slots_.find(row.id);
        if (found == slots_.end()) {
            found = slots_.emplace(row.id, makeSlot(row)).first;
        } else if (redraw.count(row.id)) {
            found->second.row->redraw();
        } else if (redrawAll) {
            staleOutOfSight_.insert(row.id);
        }
        setShown(found->second.divider, row.hasDivider);
        order.push_back(row.id);
    }
    placeInOrder(order, kept);
    updateGeometry();
    redrawRowsInSight();
}

// A thousand rows read again at each showing would keep the panel from the
// screen for a tenth of a second: the rows in sight are read now, the
// others as the list scrolls to them.
void ListWindowRowList::redrawRowsInSight() {
    if (staleOutOfSight_.empty())
        return;
    const int top = verticalScrollBar()->value();
    const int bottom = top + std::max(viewport()->height(), maximumHeight_ == QWIDGETSIZE_MAX
                                                                ? list_->sizeHint().height()
                                                                : maximumHeight_);
    for (auto it = staleOutOfSight_.begin(); it != staleOutOfSight_.end();) {
        auto found = slots_.find(*it);
        if (found == slots_.end()) {
            it = staleOutOfSight_.erase(it);
            continue;
        }
        const QRect place = found->second.row->geometry();
        if (place.bottom() >= top && place.top() <= bottom) {
            found->second.row->redraw();
            it = staleOutOfSight_.erase(it);
        } else {
            ++it;
        }
    }
}

// Rows that stayed in their order with new ones after them, the usual
// case, only add the new ones to the layout; any other change lays the
// whole order out again. The layout holds the kept rows, in their old
// order, each followed by its divider.
void ListWindowRowList::placeInOrder(const std::vector<std::size_t>& order,
                                     const std::vector<std::size_t>& kept) {
    auto* layout = list_->layout();
    const bool keptInPlace =
        kept.size() <= order.size() && std::equal(kept.begin(), kept.end(), order.begin());
    std::size_t first = kept.size();
    if (!keptInPlace) {
        first = 0;
        while (layout->count() > 0)
            delete layout->takeAt(layout->count() - 1);
    }
    for (std::size_t i = first; i < order.size(); ++i) {
        const Slot& slot = slots_.at(order[i]);
        layout->addWidget(slot.row);
        layout->addWidget(slot.divider);
    }
    order_ = order;
}

void ListWindowRowList::setMaximumListHeight(int height) {
    if (height == maximumHeight_)
        return;
    maximumHeight_ = std::max(height, rowHeight);
    updateGeometry();
}

// As tall as the rows, up to the height given; a scroll bar that shows
// takes its width beside the rows rather than from them.
QSize ListWindowRowList::sizeHint() const {
    const QSize rows = list_->sizeHint();
    if (rows.height() <= maximumHeight_)
        return rows;
    return {rows.width() + verticalScrollBar()->sizeHint().width(), maximumHeight_};
}

// The rows' own layout tells only the rows' widget of a change; the panel
// around the list learns of it here, to take the list's new size.
bool ListWindowRowList::eventFilter(QObject* watched, QEvent* event) {
    if (auto* row = qobject_cast<ListRowWidget*>(watched))
        return dragScroll(row, event);
    if (watched == list_ && event->type() == QEvent::LayoutRequest)
        updateGeometry();
    return QScrollArea::eventFilter(watched, event);
}

// Dragging a row scrolls the list as a person expects of a touch list: the
// rows follow the pointer, and the press that started the drag doesn't
// end in a click.
bool ListWindowRowList::dragScroll(QWidget* row, QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress: {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            pressedAt_ = mouse->globalPosition().toPoint();
            scrollAtPress_ = verticalScrollBar()->value();
            dragging_ = false;
            return false;
        }
        case QEvent::MouseMove: {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            if (!(mouse->buttons() & Qt::LeftButton) || verticalScrollBar()->maximum() == 0)
                return false;
            const int moved = mouse->globalPosition().toPoint().y() - pressedAt_.y();
            if (!dragging_ && std::abs(moved) < QApplication::startDragDistance())
                return false;
            if (!dragging_) {
                dragging_ = true;
                static_cast<ListRowWidget*>(row)->setDown(false);
            }
            verticalScrollBar()->setValue(scrollAtPress_ - moved);
            return true;
        }
        case QEvent::MouseButtonRelease:
            if (!dragging_)
                return false;
            dragging_ = false;
            static_cast<ListRowWidget*>(row)->setDown(false);
            return true;
        default:
            return false;
    }
}

}  // namespace platform::qt
