#include "views/RecorderControlWidget.h"

#include <QAccessible>
#include <QApplication>
#include <QFontMetricsF>
#include <QHelpEvent>
#include <QMessageBox>
#include <QMouseEvent>
#include <QToolTip>
#include <algorithm>

#include "views/QtKeyEvents.h"
#include "views/QtRecorderAppearance.h"
#include "views/RecorderControlAccessible.h"
#include "views/RecorderControlPainter.h"

namespace platform::qt {

using lirixkro::SRAccessibilityNotification;

namespace {

platform::CGPoint pointOf(const QPointF& position) {
    return {position.x(), position.y()};
}

// A refused shortcut of a control that has no window to show it on is
// shown by the application: a message box of its own.
void installApplicationErrorPresenter() {
    static const bool installed = [] {
        lirixkro::SRSetApplicationErrorPresenter([](const lirixkro::SRValidationError& error) {
            QMessageBox box(QMessageBox::Warning,
                            QString::fromStdString(error.localizedDescription),
                            QString::fromStdString(error.localizedDescription));
            box.setInformativeText(QString::fromStdString(error.localizedFailureReason));
            box.exec();
        });
        return true;
    }();
    (void)installed;
}

}  // namespace

RecorderControlWidget::RecorderControlWidget(std::shared_ptr<lirixkro::SRRecorderControl> control,
                                             QWidget* parent)
    : QWidget(parent),
      control_(control ? std::move(control) : std::make_shared<lirixkro::SRRecorderControl>()) {
    installApplicationAppearanceSource();
    installApplicationErrorPresenter();
    installRecorderControlAccessibility();
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    control_->setHost(this);
    setToolTip(control_->toolTip());
}

RecorderControlWidget::~RecorderControlWidget() {
    control_->setHost(nullptr);
}

QSize RecorderControlWidget::sizeHint() const {
    const auto& look = control_->style()->look();
    const auto& insets = look.alignmentRectInsets;
    double width = insets.left + look.alignmentToLabel +
                   std::max(labelWidth(control_->drawingLabel()), labelWidth("Record Shortcut")) +
                   look.labelToCancel + look.cancelButton.size.width + look.cancelToClear +
                   look.clearButton.size.width + look.buttonToAlignment + insets.right;
    width = std::max(width, look.intrinsicContentSize.width);
    return QSize(static_cast<int>(std::ceil(width)),
                 static_cast<int>(std::ceil(look.intrinsicContentSize.height)));
}

QSize RecorderControlWidget::minimumSizeHint() const {
    const auto& size = control_->style()->look().intrinsicContentSize;
    return QSize(static_cast<int>(std::ceil(size.width)), static_cast<int>(std::ceil(size.height)));
}

double RecorderControlWidget::labelWidth(const std::string& text) const {
    return QFontMetricsF(labelFont(control_->drawingLabelAttributes(), font()))
        .horizontalAdvance(QString::fromStdString(text));
}

bool RecorderControlWidget::isFirstResponder() const {
    return window()->focusWidget() == this;
}

bool RecorderControlWidget::makeFirstResponder() {
    setFocus(Qt::OtherFocusReason);
    return isFirstResponder();
}

void RecorderControlWidget::resignFirstResponder() {
    clearFocus();
}

// Every control of this desktop takes the focus by the keyboard, as with
// full keyboard access: the focus stays after a recording.
bool RecorderControlWidget::canBecomeKeyView() const {
    return true;
}

platform::CGSize RecorderControlWidget::bounds() const {
    return {static_cast<double>(width()), static_cast<double>(height())};
}

void RecorderControlWidget::setNeedsDisplay() {
    update();
}

void RecorderControlWidget::setNeedsLayout() {
    updateGeometry();
    update();
}

void RecorderControlWidget::setToolTip(const std::string& toolTip) {
    QWidget::setToolTip(QString::fromStdString(toolTip));
}

void RecorderControlWidget::playAlert() {
    ++alertCount_;
    QApplication::beep();
}

void RecorderControlWidget::postAccessibilityNotification(
    SRAccessibilityNotification notification) {
    QAccessible::Event type = QAccessible::NameChanged;
    if (notification == SRAccessibilityNotification::layoutChanged)
        type = QAccessible::LocationChanged;
    else if (notification == SRAccessibilityNotification::valueChanged)
        type = QAccessible::DescriptionChanged;
    QAccessibleEvent event(this, type);
    QAccessible::updateAccessibility(&event);
}

bool RecorderControlWidget::presentErrorAsSheet(const lirixkro::SRValidationError& error) {
    if (!isVisible())
        return false;
    auto* box = new QMessageBox(
        QMessageBox::Warning, QString::fromStdString(error.localizedDescription),
        QString::fromStdString(error.localizedDescription), QMessageBox::Ok, window());
    box->setInformativeText(QString::fromStdString(error.localizedFailureReason));
    box->setWindowModality(Qt::WindowModal);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
    return true;
}

lirixkro::SRToolkitAppearance RecorderControlWidget::toolkitAppearance() const {
    return toolkitAppearanceOf(palette(), layoutDirection());
}

bool RecorderControlWidget::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::ShortcutOverride:
            // While recording every key is the control's: no shortcut of the
            // window runs.
            if (control_->isRecording()) {
                event->accept();
                return true;
            }
            break;
        case QEvent::KeyPress:
            // Tab is recorded like any key, not taken to move the focus.
            if (control_->isRecording()) {
                keyPressEvent(static_cast<QKeyEvent*>(event));
                return true;
            }
            break;
        case QEvent::ToolTip: {
            const auto* help = static_cast<QHelpEvent*>(event);
            if (auto tip = control_->toolTipAtPoint(pointOf(help->pos()))) {
                QToolTip::showText(help->globalPos(), QString::fromStdString(*tip), this);
                return true;
            }
            break;
        }
        default:
            break;
    }
    return QWidget::event(event);
}

void RecorderControlWidget::paintEvent(QPaintEvent*) {
    RecorderControlPainter(*this).paint();
}

void RecorderControlWidget::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    control_->mouseDown(pointOf(event->position()));
}

void RecorderControlWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return QWidget::mouseReleaseEvent(event);
    control_->mouseUp(pointOf(event->position()));
}

bool RecorderControlWidget::handleKey(QKeyEvent* event) {
    const auto translated = platformEventOf(*event);
    if (!translated)
        return false;
    switch (translated->type) {
        case platform::EventType::flagsChanged:
            control_->flagsChanged(*translated);
            return control_->isRecording();
        case platform::EventType::keyDown:
            return control_->keyDown(*translated);
        default:
            return control_->isRecording();
    }
}

void RecorderControlWidget::keyPressEvent(QKeyEvent* event) {
    if (handleKey(event))
        event->accept();
    else
        QWidget::keyPressEvent(event);
}

void RecorderControlWidget::keyReleaseEvent(QKeyEvent* event) {
    if (handleKey(event))
        event->accept();
    else
        QWidget::keyReleaseEvent(event);
}

void RecorderControlWidget::focusOutEvent(QFocusEvent* event) {
    control_->resignFirstResponder();
    QWidget::focusOutEvent(event);
}

void RecorderControlWidget::changeEvent(QEvent* event) {
    switch (event->type()) {
        case QEvent::PaletteChange:
        case QEvent::StyleChange:
        case QEvent::LayoutDirectionChange:
            control_->scheduleControlViewAppearanceDidChange();
            break;
        case QEvent::ActivationChange:
            if (!isActiveWindow())
                control_->windowDidResignKey();
            break;
        case QEvent::EnabledChange:
            control_->setEnabled(isEnabled());
            break;
        default:
            break;
    }
    QWidget::changeEvent(event);
}

}  // namespace platform::qt
