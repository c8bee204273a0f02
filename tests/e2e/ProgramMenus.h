#pragma once

// The program's menus driven as a person does: the status item's menu in
// the tray host, and the application menu of the shown panel.
#include <sys/types.h>

#include "DesktopDriver.h"
#include "PanelMap.h"

namespace e2e {

// Opens the status item's menu of the program from its icon in the tray
// host and picks the item at this place (1 for the first) from the
// keyboard. The icon is clicked where it has settled, and the menu is known
// to be open when the server shows it.
void chooseFromStatusMenu(Desktop& desktop, pid_t program, int item);

// Opens the shown panel's application menu and goes down to the entry
// (0 for the first), the way the keyboard does in an open menu.
void openPanelMenuAt(Desktop& desktop, pid_t program, const PanelMap& map, int entry);
// Runs the command at this place (0 for the first) of the open entry's
// sub-menu.
void chooseFromPanelSubmenu(Desktop& desktop, pid_t program, int item);

}  // namespace e2e
