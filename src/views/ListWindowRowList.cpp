#include "views/ListWindowRowList.h"

#include <QApplication>
#include <QLabel>
#include <QLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <algorithm>
#include <unordered_map>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include "views/ListRowWidget.h"
#include "views/PanelLayout.h"
#include "views/PanelScrollBar.h"

namespace platform::qt {

namespace {

using namespace panelLayout;
using ListRow = tarnwick::ListWindowView::ListRow;

// A hairline in a faint shade of the text colour, so that it shows on light
// and dark panels alike.
class Divider final : public QWidget {
  public:
    explicit Divider(QWidget* parent) : QWidget(parent) {
        setObjectName(QStringLiteral("divider"));
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QColor line = palette().color(QPalette::WindowText);
        line.setAlphaF(0.15f);
        QPainter(this).fillRect(rect(), line);
    }
};

// Rows drawn beyond each edge of the sight, so that a turn of the wheel
// finds the next rows ready.
constexpr long rowsBeyondSight = 4;
// Widgets kept for rows to come after the list got shorter.
constexpr std::size_t spareSlots = 8;
// The round buttons before a row's title.
constexpr int rowLeadingWidth = 3 * (trafficButtonSide + trafficButtonSpacing);

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
    // The panel's own background shows through.
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBar(new PanelScrollBar(this));
    // The rows' widget is as tall as all rows would be, and as wide as the
    // list: its size is worked out here, not by a layout.
    setWidgetResizable(false);
    setWidget(list_);
    // A longer list paints only what it adds, which is out of sight.
    list_->setAttribute(Qt::WA_StaticContents);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { redrawRowsInSight(); });
    viewport()->setAutoFillBackground(false);
    list_->setAutoFillBackground(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

ListWindowRowList::~ListWindowRowList() = default;

std::vector<ListRowWidget*> ListWindowRowList::rows() const {
    std::vector<ListRowWidget*> result;
    result.reserve(inSight_.size());
    for (const Slot& slot : inSight_)
        result.push_back(slot.row);
    return result;
}

void ListWindowRowList::apply(const std::vector<Row>& rows,
                              const std::unordered_set<std::size_t>& redraw, bool redrawAll) {
    const std::size_t before = entries_.size();
    updateEntries(rows, redraw);
    if (before >= entries_.size() + manyRows)
        giveBackMemorySoon(this);
    measureWidestTitle();
    layOut(&redraw, redrawAll);
}

void ListWindowRowList::measureWidestTitle() {
    widestTitle_ = 0;
    for (const Entry& entry : entries_)
        widestTitle_ = std::max(widestTitle_, entry.titleWidth);
}

// The usual change keeps the rows in their order and adds new ones after
// them: those are matched by position, and the entries kept as they are.
// Only rows after the first difference are looked up by key, and only a
// row that is new, or whose window said its title changed, has its title
// measured.
void ListWindowRowList::updateEntries(const std::vector<Row>& rows,
                                      const std::unordered_set<std::size_t>& retitled) {
    std::size_t same = 0;
    while (same < rows.size() && same < entries_.size() && rows[same].id == entries_[same].id)
        ++same;
    std::unordered_map<std::size_t, int> widths;
    widths.reserve(entries_.size() - same);
    for (std::size_t i = same; i < entries_.size(); ++i)
        widths.emplace(entries_[i].id, entries_[i].titleWidth);
    entries_.resize(same);
    entries_.reserve(rows.size());

    std::optional<TitleMeasure> measure;
    const auto measured = [&](const Row& row) {
        if (!measure)
            measure.emplace();
        return (*measure)(ListRow::titleOf(*row.window));
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const Row& row = rows[i];
        const bool askedAgain = !retitled.empty() && retitled.count(row.id);
        if (i < same) {
            entries_[i].hasDivider = row.hasDivider;
            if (askedAgain)
                entries_[i].titleWidth = measured(row);
            continue;
        }
        const auto known = widths.find(row.id);
        const int width = known != widths.end() && !askedAgain ? known->second : measured(row);
        entries_.push_back({row.window, row.id, row.hasDivider, width});
    }
}

void ListWindowRowList::redrawRowsInSight() {
    if (!layingOut_)
        layOut(nullptr, false);
}

// A title that changed with no word from its window is seen when its row
// is drawn: the panel takes the width it now asks for.
void ListWindowRowList::noteTitleDrawn(std::size_t position, const ListRowWidget& row,
                                       std::optional<TitleMeasure>& measure) {
    if (!measure)
        measure.emplace();
    const int width = (*measure)(row.title()->accessibleName());
    Entry& entry = entries_[position];
    if (width == entry.titleWidth)
        return;
    const bool wasWidest = entry.titleWidth == widestTitle_;
    entry.titleWidth = width;
    if (width > widestTitle_)
        widestTitle_ = width;
    else if (wasWidest)
        measureWidestTitle();
}

// The rows in sight keep their widgets; those that left sight give theirs
// to those that came into it, which read their window as they are bound.
// Kept rows read their window again only when asked to.
void ListWindowRowList::layOut(const std::unordered_set<std::size_t>* redraw, bool redrawAll) {
    layingOut_ = true;
    list_->resize(viewport()->width(), listHeight());
    const auto [first, last] = rangeInSight();

    std::vector<Slot> kept;
    kept.reserve(last - first);
    std::vector<std::size_t> keptAt;
    for (const Slot& slot : inSight_) {
        std::size_t at = first;
        while (at < last && entries_[at].id != slot.id)
            ++at;
        if (at < last) {
            kept.push_back(slot);
            keptAt.push_back(at);
        } else {
            setShown(slot.row, false);
            setShown(slot.divider, false);
            spare_.push_back(slot);
        }
    }

    std::optional<TitleMeasure> measure;
    std::vector<Slot> shown;
    shown.reserve(last - first);
    for (std::size_t at = first; at < last; ++at) {
        const auto found = std::find(keptAt.begin(), keptAt.end(), at);
        if (found != keptAt.end()) {
            const Slot& slot = kept[static_cast<std::size_t>(found - keptAt.begin())];
            place(slot, at);
            if (redrawAll || (redraw && redraw->count(slot.id))) {
                slot.row->redraw();
                noteTitleDrawn(at, *slot.row, measure);
            }
            shown.push_back(slot);
        } else {
            shown.push_back(bind(at));
            noteTitleDrawn(at, *shown.back().row, measure);
        }
    }
    inSight_ = std::move(shown);
    keepReadingOrder();
    while (spare_.size() > spareSlots) {
        retire(spare_.back().row);
        retire(spare_.back().divider);
        spare_.pop_back();
    }
    layingOut_ = false;
    sizeChanged();
}

// A screen reader reads the rows in the order of the list's children: a
// widget that took a row above the others moves to its place there.
void ListWindowRowList::keepReadingOrder() {
    std::size_t next = 0;
    bool ordered = true;
    for (QObject* child : list_->children()) {
        auto* row = qobject_cast<ListRowWidget*>(child);
        if (!row || row->isHidden())
            continue;
        if (next >= inSight_.size() || inSight_[next].row != row) {
            ordered = false;
            break;
        }
        ++next;
    }
    if (ordered)
        return;
    for (const Slot& slot : inSight_) {
        slot.row->raise();
        slot.divider->raise();
    }
}

// A widget that drew another row, or a new one, draws the row at this
// position, placed before it reads its window so that the title is
// shortened once, to the room it has.
ListWindowRowList::Slot ListWindowRowList::bind(std::size_t position) {
    const Entry& entry = entries_[position];
    Slot slot;
    if (!spare_.empty()) {
        slot = spare_.back();
        spare_.pop_back();
    } else {
        slot.row = new ListRowWidget(coordinator_, list_);
        slot.row->installEventFilter(this);
        slot.divider = new Divider(list_);
    }
    slot.id = entry.id;
    place(slot, position);
    slot.row->setRow(ListRow(entry.window, coordinator_, std::make_shared<ListRow::VM>()));
    setShown(slot.row, true);
    return slot;
}

void ListWindowRowList::place(const Slot& slot, std::size_t position) const {
    const int top = static_cast<int>(position) * rowPitch;
    const int width = list_->width();
    slot.row->setGeometry(0, top, width, rowHeight);
    slot.divider->setGeometry(0, top + rowHeight + rowSpacing, width, dividerHeight);
    setShown(slot.divider, entries_[position].hasDivider);
}

// The rows from a little above the top of the sight to a little below its
// bottom. Before the list is first laid out the sight is taken to be as
// tall as the list will be, so that a panel built while hidden shows with
// its rows ready.
std::pair<std::size_t, std::size_t> ListWindowRowList::rangeInSight() const {
    if (entries_.empty())
        return {0, 0};
    int sight = std::min(listHeight(), maximumHeight_);
    if (maximumHeight_ == QWIDGETSIZE_MAX && screen())
        sight = std::min(sight, screen()->availableGeometry().height());
    sight = std::max(sight, viewport()->height());
    const int top = std::max(0, verticalScrollBar()->value());
    const auto count = static_cast<long>(entries_.size());
    const long first = std::max(0L, top / rowPitch - rowsBeyondSight);
    const long last = std::min(count, (top + sight) / rowPitch + 1 + rowsBeyondSight);
    return {static_cast<std::size_t>(first), static_cast<std::size_t>(std::max(first, last))};
}

int ListWindowRowList::listHeight() const {
    if (entries_.empty())
        return 0;
    return static_cast<int>(entries_.size()) * rowPitch - 2 * rowSpacing - dividerHeight;
}

void ListWindowRowList::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    redrawRowsInSight();
}

// Called again once the panel is shown, when the room on its screen is
// known: the width may change with it.
void ListWindowRowList::setLimits(int maximumHeight, int frameWidth) {
    maximumHeight_ = std::max(maximumHeight, rowHeight);
    frameWidth_ = frameWidth;
    sizeChanged();
}

void ListWindowRowList::showEvent(QShowEvent* event) {
    QScrollArea::showEvent(event);
    sizeChanged();
}

// The room a title has for the panel to fit the work area of its screen,
// beside the panel's paddings and the window manager's frame: the one Qt
// knows now, or the one given, which Qt forgets while the panel is hidden.
int ListWindowRowList::titleRoom() const {
    const QScreen* shownOn = screen();
    if (!shownOn)
        return QWIDGETSIZE_MAX;
    const QWidget* top = window();
    const int frame = std::max(top->frameGeometry().width() - top->width(), frameWidth_);
    return std::max(0, widestRowTitle(shownOn->availableGeometry().width() - frame));
}

// As tall as the rows, up to the height given, and as wide as the widest
// title asks; a scroll bar that shows takes its width beside the rows
// rather than from them, as long as the screen has room.
QSize ListWindowRowList::sizeHint() const {
    const int rows = listHeight();
    int room = titleRoom();
    const bool scrolls = rows > maximumHeight_;
    const int scrollBar = scrolls ? verticalScrollBar()->sizeHint().width() : 0;
    if (room != QWIDGETSIZE_MAX)
        room -= scrollBar;
    const int width = rowLeadingWidth + std::min(widestTitle_, room) + scrollBar;
    return {width, scrolls ? maximumHeight_ : rows};
}

// The panel around the list is told only when the list would take another
// size: a new row out of sight changes nothing there.
void ListWindowRowList::sizeChanged() {
    const QSize hint = sizeHint();
    if (hint == hinted_)
        return;
    hinted_ = hint;
    updateGeometry();
}

bool ListWindowRowList::eventFilter(QObject* watched, QEvent* event) {
    if (auto* row = qobject_cast<ListRowWidget*>(watched))
        return dragScroll(row, event);
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
