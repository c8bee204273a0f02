#pragma once

#include <QWidget>
#include <functional>

#include "firstrun/PermissionRequestView.h"
#include "listwindow/ListWindowView.h"
#include "platform/Subscription.h"
#include "support/Signal.h"

namespace platform::qt {

// The panel's content: one of three trees, drawn from the content the
// provider computes, and drawn anew from scratch whenever the signal says
// the content changed. A redraw gives every row fresh state, so all rows
// start with their symbols hidden.
class ListWindowWidget final : public QWidget {
  public:
    using Content = tarnwick::ListWindowView::Content;
    using ContentProvider = std::function<Content()>;

    // The permission request, where given, fills the permission tree.
    ListWindowWidget(ContentProvider provider, quillbox::Signal<>& changed,
                     tarnwick::ListWindowView::ListRow::Coordinator& coordinator,
                     QWidget* parent = nullptr,
                     tarnwick::PermissionRequestView* permissionView = nullptr);
    ~ListWindowWidget() override;

    // The tree shown now.
    QWidget* tree() const { return tree_; }

    void redraw();

  private:
    ContentProvider provider_;
    tarnwick::ListWindowView::ListRow::Coordinator& coordinator_;
    tarnwick::PermissionRequestView* permissionView_;
    QWidget* tree_ = nullptr;
    platform::Subscription changes_;
};

}  // namespace platform::qt
