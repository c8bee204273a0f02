#pragma once

#include <string>

#include "firstrun/PermissionRequestView.h"
#include "listwindow/ListWindowView.h"

class QPushButton;
class QWidget;

namespace platform::qt {

// Builds the widgets of one of the panel's trees that hold no rows: a line
// of error text, or the permission request (its two steps where the view is
// given, else its one line of text).
QWidget* buildListWindowTree(const tarnwick::ListWindowView::Content& content,
                             tarnwick::PermissionRequestView* permissionView, QWidget* parent);

// The parts of the tree with the rows: the application menu's button, and
// the text that says there are no windows.
QPushButton* buildMenuButton(const tarnwick::ListWindowView::Menu& menu, QWidget* parent);
QWidget* buildEmptyText(const std::string& text, QWidget* parent);

}  // namespace platform::qt
