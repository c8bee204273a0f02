#include "views/ListWindowWidget.h"

#include <QVBoxLayout>

#include "views/ListWindowTrees.h"

namespace platform::qt {

ListWindowWidget::ListWindowWidget(ContentProvider provider, quillbox::Signal<>& changed,
                                   tarnwick::ListWindowView::ListRow::Coordinator& coordinator,
                                   QWidget* parent, tarnwick::PermissionRequestView* permissionView)
    : QWidget(parent),
      provider_(std::move(provider)),
      coordinator_(coordinator),
      permissionView_(permissionView) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    changes_ = changed.connect([this] { redraw(); });
    redraw();
}

ListWindowWidget::~ListWindowWidget() = default;

// The old tree may be the sender of the change, in the middle of a click:
// it is hidden now and deleted once control is back in the event loop.
void ListWindowWidget::redraw() {
    QWidget* next = buildListWindowTree(provider_(), coordinator_, permissionView_, this);
    if (tree_) {
        tree_->hide();
        layout()->removeWidget(tree_);
        tree_->deleteLater();
    }
    layout()->addWidget(next);
    tree_ = next;
}

}  // namespace platform::qt
