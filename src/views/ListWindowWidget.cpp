#include "views/ListWindowWidget.h"

#include <QGuiApplication>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

#include "views/ListWindowRowList.h"
#include "views/ListWindowTrees.h"
#include "views/PanelLayout.h"
#include "views/QtWindow.h"

#if defined(__linux__)
#include "views/QtX11Connection.h"
#endif

namespace platform::qt {

namespace {

using tarnwick::ListWindowView;
using namespace panelLayout;

// What the panel holds above and below its rows.
constexpr int chromeAroundRows = 2 * scenePadding + menuButtonHeight + sectionSpacing;

}  // namespace

ListWindowWidget::ListWindowWidget(ContentProvider provider, quillbox::Signal<>& changed,
                                   tarnwick::ListWindowView::ListRow::Coordinator& coordinator,
                                   QWidget* parent, tarnwick::PermissionRequestView* permissionView)
    : QWidget(parent),
      provider_(std::move(provider)),
      coordinator_(coordinator),
      permissionView_(permissionView),
      applyOnce_([this] {
          if (stale_ && isVisible())
              apply(allWindowsChanged_);
      }) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    changes_ = changed.connect([this] { markStale(); });
    apply(true);
}

ListWindowWidget::~ListWindowWidget() = default;

void ListWindowWidget::follow(tarnwick::ListWindowView& view) {
    windowChanges_ = view.windowChanged().connect([this](std::optional<std::size_t> windowId) {
        if (windowId)
            changedWindows_.insert(*windowId);
        else
            allWindowsChanged_ = true;
        markStale();
    });
    presentations_ = view.presenting().connect([this] { redraw(); });
}

void ListWindowWidget::markStale() {
    stale_ = true;
    if (isVisible())
        applyOnce_.request();
}

void ListWindowWidget::redraw() {
    apply(true);
    // The panel is placed by its size: it is worked out now, not when the
    // layouts' own turns come. From the content out to the window, each
    // layout laid out passes its new size on to the one around it.
    for (QWidget* widget = tree_; widget; widget = widget->parentWidget()) {
        if (widget->layout())
            widget->layout()->activate();
    }
    if (rowList_)
        rowList_->redrawRowsInSight();
}

// A panel shown by other means than a presentation still draws what is
// true now.
void ListWindowWidget::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (stale_)
        apply(allWindowsChanged_);
    sendOpacityAtOnce();
    // The window's frame, which the rows make room for, may only be known
    // now that the window is shown.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (rowList_)
                applyLimits();
        },
        Qt::QueuedConnection);
}

// Qt leaves the opacity it writes to the window in the connection's buffer
// until something else sends it, which a panel that only fades may not do
// for a long while: the fade that follows the pointer is sent at each step.
void ListWindowWidget::sendOpacityAtOnce() {
#if defined(__linux__)
    QWindow* handle = window() ? window()->windowHandle() : nullptr;
    if (!handle || handle == opacityFollowed_)
        return;
    opacityFollowed_ = handle;
    connect(handle, &QWindow::opacityChanged, this, [this] {
        if (xcb_connection_t* connection = x11::connectionFor(*window()))
            xcb_flush(connection);
    });
#endif
}

void ListWindowWidget::apply(bool redrawAll) {
    stale_ = false;
    const Content content = provider_();
    if (content.tree == ListWindowView::Tree::menuAndList) {
        updateMenuAndList(content, redrawAll);
    } else {
        replaceTree(buildListWindowTree(content, permissionView_, this));
    }
    treeKind_ = content.tree;
    changedWindows_.clear();
    allWindowsChanged_ = false;
    // Widgets made while the panel was hidden take their style now, so
    // that the size the panel is placed by is the size it shows at.
    tree_->ensurePolished();
}

void ListWindowWidget::replaceTree(QWidget* next) {
    retire(tree_);
    layout()->addWidget(next);
    // Shown at once in a shown panel, not a turn later.
    next->show();
    tree_ = next;
    menuButton_ = nullptr;
    menu_.reset();
    emptyText_ = nullptr;
    rowList_ = nullptr;
}

// The menu is built again only when it would look different, so that an
// open menu stays open through a change of the rows; the rows themselves
// are kept by identity.
void ListWindowWidget::updateMenuAndList(const Content& content, bool redrawAll) {
    if (treeKind_ != ListWindowView::Tree::menuAndList || !tree_) {
        auto* tree = new QWidget(this);
        auto* layout = new QVBoxLayout(tree);
        layout->setContentsMargins(scenePadding, scenePadding, scenePadding, scenePadding);
        layout->setSpacing(sectionSpacing);
        replaceTree(tree);
    }
    auto* layout = static_cast<QVBoxLayout*>(tree_->layout());
    if (!menu_ || !menu_->looksLike(content.menu)) {
        QPushButton* button = buildMenuButton(content.menu, tree_);
        if (menuButton_) {
            layout->replaceWidget(menuButton_, button);
            retire(menuButton_);
        } else {
            layout->insertWidget(0, button);
        }
        button->show();
        menuButton_ = button;
        menu_ = content.menu;
    }
    if (content.emptyText) {
        retire(rowList_);
        rowList_ = nullptr;
        if (emptyText_ && emptyTextShown_ == *content.emptyText)
            return;
        retire(emptyText_);
        emptyText_ = buildEmptyText(*content.emptyText, tree_);
        emptyTextShown_ = *content.emptyText;
        layout->addWidget(emptyText_);
        emptyText_->show();
        return;
    }
    retire(emptyText_);
    emptyText_ = nullptr;
    if (!rowList_) {
        rowList_ = new ListWindowRowList(coordinator_, tree_);
        layout->addWidget(rowList_);
        rowList_->show();
    }
    applyLimits();
    rowList_->apply(content.rows, changedWindows_, redrawAll);
}

void ListWindowWidget::applyLimits() {
    // Qt forgets the frame of a hidden panel; its window keeps it.
    const QSize frame = QtWindow::frameSizeOf(*window());
    rowList_->setLimits(listHeightLimit(frame), frame.width());
}

// The panel is never taller than the work area of its screen: the rows
// take what the menu, the paddings and the window's frame leave.
int ListWindowWidget::listHeightLimit(const QSize& frame) const {
    const QScreen* shownOn = window()->screen();
    if (!shownOn)
        shownOn = QGuiApplication::primaryScreen();
    if (!shownOn)
        return QWIDGETSIZE_MAX;
    return shownOn->availableGeometry().height() - chromeAroundRows - frame.height();
}

}  // namespace platform::qt
