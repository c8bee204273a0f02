#include "views/ListRowWidget.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "views/PanelLayout.h"
#include "views/TrafficLightButton.h"

namespace platform::qt {

namespace {

using namespace panelLayout;

// The program's points are Qt's device-independent pixels, as everywhere
// at the seam, so the row's text keeps its size next to the panel's
// paddings and the round buttons on every screen.
constexpr int rowFontPoints = 12;

// The round buttons before the title.
constexpr int leadingWidth = 3 * (trafficButtonSide + trafficButtonSpacing);

// A title of this many characters is wider than any screen: the rest of
// it needn't be measured.
constexpr int longestMeasuredTitle = 4000;

QFont boldRowFont() {
    QFont font = listRowFont();
    font.setBold(true);
    return font;
}

}  // namespace

QFont listRowFont() {
    QFont font = QApplication::font();
    font.setPixelSize(rowFontPoints);
    return font;
}

TitleMeasure::TitleMeasure() : metrics_(boldRowFont()) {}

// As the title's label asks for its text.
int TitleMeasure::operator()(const QString& title) const {
    return metrics_
        .boundingRect(QRect(0, 0, QWIDGETSIZE_MAX, rowHeight), Qt::AlignLeft,
                      title.left(longestMeasuredTitle))
        .width();
}

int TitleMeasure::operator()(const std::string& title) const {
    return (*this)(QString::fromStdString(title));
}

ListRowWidget::ListRowWidget(tarnwick::ListWindowView::Coordinator& coordinator, QWidget* parent)
    : QAbstractButton(parent), title_(new QLabel(this)) {
    setFocusPolicy(Qt::NoFocus);
    setFont(listRowFont());
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFixedHeight(rowHeight);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, rowVerticalPadding, 0, rowVerticalPadding);
    layout->setSpacing(trafficButtonSpacing);
    for (auto& button : buttons_) {
        button = new TrafficLightButton(this);
        layout->addWidget(button, 0, Qt::AlignVCenter);
    }
    // The title keeps its text on one line, shortened in the middle where
    // the screen is too narrow for it, and lets clicks through to the row.
    title_->setTextFormat(Qt::PlainText);
    title_->setWordWrap(false);
    title_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    title_->setAttribute(Qt::WA_TransparentForMouseEvents);
    // Borderless: the title is the panel's text, not a button's.
    title_->setForegroundRole(QPalette::WindowText);
    layout->addWidget(title_, 0, Qt::AlignVCenter);
    layout->addStretch(1);

    // The window is taken before the raise, which may give this widget
    // another row.
    connect(this, &QAbstractButton::clicked, this, [this, &coordinator] {
        if (!row_)
            return;
        const auto window = row_->window();
        coordinator.raiseWindow(window);
    });
}

ListRowWidget::~ListRowWidget() = default;

void ListRowWidget::setRow(ListRow row) {
    vmChanges_ = {};
    row_.emplace(std::move(row));
    vmChanges_ = row_->vm().changed().connect([this] { redraw(); });
    drawn_.reset();
    redraw();
}

void ListRowWidget::redraw() {
    if (!row_)
        return;
    ListRow::Drawing drawing = row_->draw();
    if (drawn_ && drawn_->looksLike(drawing))
        return;
    for (std::size_t index = 0; index < buttons_.size(); ++index)
        buttons_[index]->setButton(drawing.buttons[index]);

    const QString title = QString::fromStdString(drawing.title);
    QFont font = listRowFont();
    font.setBold(drawing.bold);
    font.setItalic(drawing.italic);
    title_->setFont(font);
    QPalette palette = this->palette();
    QColor text = palette.color(QPalette::WindowText);
    text.setAlphaF(static_cast<float>(drawing.opacity));
    palette.setColor(QPalette::WindowText, text);
    title_->setPalette(palette);
    // Screen readers read the whole title, however it is shortened.
    title_->setAccessibleName(title);
    shortenTitle();
    setAccessibleName(title);
    drawn_ = std::move(drawing);
}

// The title takes the room the row has beside its round buttons, and is
// shortened in the middle where that is too little.
void ListRowWidget::shortenTitle() {
    const int room = std::max(0, width() - leadingWidth);
    const QString& title = title_->accessibleName();
    title_->setText(QFontMetrics(title_->font()).elidedText(title, Qt::ElideMiddle, room));
}

void ListRowWidget::resizeEvent(QResizeEvent* event) {
    QAbstractButton::resizeEvent(event);
    if (row_)
        shortenTitle();
}

void ListRowWidget::enterEvent(QEnterEvent* event) {
    QAbstractButton::enterEvent(event);
    if (row_)
        row_->vm().setShowButtonIcons(true);
}

void ListRowWidget::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    if (row_)
        row_->vm().setShowButtonIcons(false);
}

// The title's colour is the palette's text colour made fainter, so a new
// palette (a change to a dark theme) needs it worked out again.
void ListRowWidget::changeEvent(QEvent* event) {
    QAbstractButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        drawn_.reset();
        redraw();
    }
}

// Borderless: only a press shows, as a soft tint behind the row.
void ListRowWidget::paintEvent(QPaintEvent*) {
    if (!isDown())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor tint = palette().color(QPalette::WindowText);
    tint.setAlphaF(0.08f);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tint);
    painter.drawRoundedRect(QRectF(rect()), 5, 5);
}

}  // namespace platform::qt
