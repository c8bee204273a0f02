#pragma once

#include <QKeySequence>
#include <memory>

#include "platform/Menu.h"

class QMenu;

namespace platform::qt {

// The key sequence of a menu item's key equivalent. Command is Qt's Ctrl
// and Control Qt's Meta, Qt's portable pairing, so that on Linux Command
// shortcuts read "Ctrl+…". A capital letter adds Shift.
QKeySequence keySequenceFor(const MenuItem& item);

// Keeps a Qt menu in step with a menu of the program: the Qt menu is filled
// anew from it each time it is about to show, since the program may add
// items after handing the menu over. Choosing an item runs its action.
void followMenu(QMenu& target, std::shared_ptr<Menu> source);

// Fills a Qt menu from the program's menu once, as it stands now.
void fillMenu(QMenu& target, const Menu& source);

}  // namespace platform::qt
