#pragma once

#include <QMenu>
#include <functional>
#include <map>

#include "listwindow/ListWindowView.h"

namespace platform::qt {

// The pull-down menu of applications: favourites, a divider that is there
// even when a side is empty, the other tracked applications. Each entry is
// a sub-menu with a primary action: a plain click on the entry (or Return)
// selects the application, while resting on it opens the grouping
// commands.
class AppMenu final : public QMenu {
    Q_OBJECT

  public:
    explicit AppMenu(const tarnwick::ListWindowView::Menu& menu, QWidget* parent = nullptr);

    // Closes the menu and runs the entry's primary action; false for an
    // action that isn't an entry of this menu.
    bool choose(QAction* entry);

  protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void addEntry(const tarnwick::ListWindowView::MenuEntry& entry);

    std::map<QAction*, std::function<void()>> primaryActions_;
};

}  // namespace platform::qt
