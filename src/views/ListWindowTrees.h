#pragma once

#include "listwindow/ListWindowView.h"

class QWidget;

namespace platform::qt {

// Builds the widgets of one of the panel's trees from its content: a line
// of error text, the permission request, or the application menu above
// the window rows (or the text that says there are none).
QWidget* buildListWindowTree(const tarnwick::ListWindowView::Content& content,
                             tarnwick::ListWindowView::ListRow::Coordinator& coordinator,
                             QWidget* parent);

}  // namespace platform::qt
