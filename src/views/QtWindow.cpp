#include "views/QtWindow.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QMoveEvent>
#include <QResizeEvent>
#include <QVBoxLayout>
#include <QWidget>
#include <algorithm>

#include "views/QtContentView.h"
#include "views/QtWindowFlags.h"
#include "views/ScreenCoordinates.h"
#include "views/WindowFrameExtents.h"

namespace platform::qt {

// The top-level widget. A close asked by the window manager or by Qt goes
// through the window's own close().
class QtWindow::Widget final : public QWidget {
  public:
    explicit Widget(QtWindow& owner) : owner_(owner) {}
    QtWindow& owner() const { return owner_; }

  protected:
    void closeEvent(QCloseEvent* event) override {
        event->ignore();
        owner_.close();
    }
    void moveEvent(QMoveEvent* event) override {
        QWidget::moveEvent(event);
        owner_.keepPlacedOrigin();
    }
    void resizeEvent(QResizeEvent* event) override {
        QWidget::resizeEvent(event);
        owner_.keepPlacedOrigin();
    }

  private:
    QtWindow& owner_;
};

QtWindow::QtWindow(Kind kind, WindowStyleMask styleMask, ShowPreparation prepareForShow)
    : kind_(kind),
      styleMask_(styleMask),
      hidesOnDeactivate_(kind == Kind::panel),
      prepareForShow_(std::move(prepareForShow)),
      widget_(std::make_unique<Widget>(*this)),
      layout_(new QVBoxLayout(widget_.get())),
      frameExtentsRequest_([this] {
          if (!widget_->isVisible())
              x11::requestFrameExtents(*widget_);
      }) {
    if (kind == Kind::panel) {
        exposure_ = std::make_unique<x11::QtWindowExposure>(*widget_);
    }
    layout_->setContentsMargins(0, 0, 0, 0);
    // The window is as large as its content, whatever the content shows.
    layout_->setSizeConstraint(QLayout::SetFixedSize);
    applyWindowFlags();
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, widget_.get(),
                     [this](Qt::ApplicationState state) {
                         if (state != Qt::ApplicationActive)
                             hideOnDeactivation();
                     });
}

QtWindow::~QtWindow() = default;

QWidget* QtWindow::widget() const {
    return widget_.get();
}

std::string QtWindow::title() const {
    return widget_->windowTitle().toStdString();
}

void QtWindow::setTitle(const std::string& title) {
    widget_->setWindowTitle(QString::fromStdString(title));
}

void QtWindow::setStyleMask(WindowStyleMask mask) {
    styleMask_ = mask;
    applyWindowFlags();
}

void QtWindow::setLevel(WindowLevel level) {
    level_ = level;
    applyWindowFlags();
}

// Qt hides a window whose flags change; a visible one is shown again where
// it was.
void QtWindow::applyWindowFlags() {
    const auto flags = windowFlagsFor(kind_ == Kind::panel, styleMask_, level_);
    if (widget_->windowFlags() == flags)
        return;
    const bool wasVisible = widget_->isVisible();
    const QPoint position = widget_->pos();
    widget_->setWindowFlags(flags);
    widget_->setAttribute(Qt::WA_ShowWithoutActivating, kind_ == Kind::panel);
    if (wasVisible) {
        widget_->move(position);
        show(false);
    } else if (flags.testFlag(Qt::BypassWindowManagerHint)) {
        // No window manager frames it: there is nothing to ask.
        frameMargins_ = QMargins();
    } else {
        frameMargins_.reset();
        frameExtentsRequest_.request();
    }
}

// How long the first placement waits for the window manager to tell the
// frame: a window manager answers at once, and without one the window is
// placed by its bare size after this.
constexpr std::chrono::milliseconds firstFramePatience{100};

// A window not made on the server yet has no frame to tell, and asking
// would make it before its flags are settled.
QSize QtWindow::frameSizeOf(const QWidget& windowWidget) {
    const auto* widget = dynamic_cast<const Widget*>(&windowWidget);
    if (!widget || !widget->testAttribute(Qt::WA_WState_Created))
        return QSize(0, 0);
    return widget->owner().expectedFrameGeometry().size() - widget->size();
}

CGRect QtWindow::frame() const {
    return ScreenCoordinates::ofPrimaryScreen().toBottomLeft(expectedFrameGeometry());
}

// Qt knows the window manager's frame while the window is framed; before
// the first showing, the frame the window manager said it will draw is
// added (its answer waited for the first time), so that a window first
// shown where it was placed doesn't move after its title bar comes. The
// frame, once known, is kept: the pointer's distance reads it at every
// move, and it doesn't change while hidden. A shown window that Qt sees
// unframed has no frame to ask the server about, which spares those moves
// a round trip when no window manager frames it; one the window manager
// passes by is known unframed from its flags.
QRect QtWindow::expectedFrameGeometry() const {
    const QRect frame = widget_->frameGeometry();
    const QRect content = widget_->geometry();
    if (frame != content) {
        frameMargins_ =
            QMargins(content.left() - frame.left(), content.top() - frame.top(),
                     frame.right() - content.right(), frame.bottom() - content.bottom());
        return frame;
    }
    if (!frameMargins_ && !widget_->isVisible()) {
        frameMargins_ = frameExtentsAwaited_ ? x11::frameExtents(*widget_)
                                             : x11::awaitFrameExtents(*widget_, firstFramePatience);
        frameExtentsAwaited_ = true;
    }
    return frameMargins_ ? QRect(frame.topLeft(), frame.size().grownBy(*frameMargins_)) : frame;
}

// Qt places a window by its frame once it knows the frame. Before that it
// places the content where it is told, so a frame the window manager told
// us about, and Qt hasn't heard of yet, is stepped over.
void QtWindow::setFrameOrigin(CGPoint origin) {
    placedOrigin_ = origin;
    heightWhenPlaced_ = expectedFrameGeometry().height();
    QPoint topLeft = ScreenCoordinates::ofPrimaryScreen().topLeftFor(origin, heightWhenPlaced_);
    if (frameMargins_ && widget_->frameGeometry() == widget_->geometry())
        topLeft += QPoint(frameMargins_->left(), frameMargins_->top());
    widget_->move(topLeft);
}

// A window manager that didn't tell its frame beforehand adds the title bar
// after the window first shows, and the frame then reaches further down than
// placed. Placing it again once keeps the bottom-left corner where it was
// put.
void QtWindow::keepPlacedOrigin() {
    if (!awaitingDecoration_ || !placedOrigin_)
        return;
    if (widget_->frameGeometry().height() == heightWhenPlaced_)
        return;
    awaitingDecoration_ = false;
    setFrameOrigin(*placedOrigin_);
}

void QtWindow::setAlphaValue(double alpha) {
    alpha_ = alpha;
    widget_->setWindowOpacity(std::clamp(alpha, 0.0, 1.0));
}

bool QtWindow::isVisible() const {
    return widget_->isVisible();
}

// A panel never takes keyboard focus, so for it this is orderFront().
void QtWindow::makeKeyAndOrderFront() {
    show(kind_ != Kind::panel);
}

void QtWindow::orderFront() {
    show(false);
}

void QtWindow::show(bool activating) {
    if (prepareForShow_)
        prepareForShow_(widget_.get());
    widget_->setAttribute(Qt::WA_ShowWithoutActivating, !activating);
    awaitingDecoration_ = !widget_->isVisible();
    widget_->show();
    // Showing queues a later repaint of the window and of each widget in
    // it. Taken after the server has mapped the window, which Qt answers
    // with a drawing of the whole window, they would draw it all again;
    // taken now, they only mark what that first drawing covers.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::UpdateLater);
    keepPlacedOrigin();
    widget_->raise();
    if (activating)
        widget_->activateWindow();
}

void QtWindow::close() {
    if (!widget_->isVisible())
        return;
    if (delegate_)
        delegate_->windowWillClose(this);
    widget_->hide();
}

void QtWindow::hideOnDeactivation() {
    if (hidesOnDeactivate_ && widget_->isVisible())
        widget_->hide();
}

void QtWindow::setContentView(std::shared_ptr<ContentView> view) {
    if (auto* old = dynamic_cast<QtContentView*>(contentView_.get()); old && old->widget()) {
        layout_->removeWidget(old->widget());
        old->widget()->setParent(nullptr);
    }
    contentView_ = std::move(view);
    if (auto* content = dynamic_cast<QtContentView*>(contentView_.get());
        content && content->widget()) {
        layout_->addWidget(content->widget());
    }
    layout_->activate();
}

}  // namespace platform::qt
