#pragma once

#include "firstrun/PermissionRequestView.h"
#include "listwindow/ListWindowView.h"

class QWidget;

namespace platform::qt {

// Builds the widgets of one of the panel's trees from its content: a line
// of error text, the permission request (its two steps where the view is
// given, else its one line of text), or the application menu above the
// window rows (or the text that says there are none).
QWidget* buildListWindowTree(const tarnwick::ListWindowView::Content& content,
                             tarnwick::ListWindowView::ListRow::Coordinator& coordinator,
                             tarnwick::PermissionRequestView* permissionView, QWidget* parent);

}  // namespace platform::qt
