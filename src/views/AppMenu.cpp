#include "views/AppMenu.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include "views/QtImages.h"

namespace platform::qt {

AppMenu::AppMenu(const tarnwick::ListWindowView::Menu& menu, QWidget* parent) : QMenu(parent) {
    // With no favourites the menu begins with the divider.
    setSeparatorsCollapsible(false);
    for (const auto& entry : menu.favorites)
        addEntry(entry);
    addSeparator();
    for (const auto& entry : menu.tracked)
        addEntry(entry);
}

void AppMenu::addEntry(const tarnwick::ListWindowView::MenuEntry& entry) {
    auto* submenu = new QMenu(QString::fromStdString(entry.name), this);
    for (const auto& item : entry.submenu) {
        QAction* command = submenu->addAction(QString::fromStdString(item.title));
        connect(command, &QAction::triggered, command, [action = item.action] {
            if (action)
                action();
        });
    }
    QAction* action = addMenu(submenu);
    action->setIcon(iconFor(entry.icon));
    primaryActions_.emplace(action, entry.select);
}

bool AppMenu::choose(QAction* entry) {
    const auto found = primaryActions_.find(entry);
    if (found == primaryActions_.end())
        return false;
    const auto select = found->second;
    if (entry->menu())
        entry->menu()->hide();
    hide();
    if (select)
        select();
    return true;
}

void AppMenu::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && choose(actionAt(event->position().toPoint())))
        return;
    QMenu::mouseReleaseEvent(event);
}

void AppMenu::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && choose(activeAction()))
        return;
    QMenu::keyPressEvent(event);
}

}  // namespace platform::qt
