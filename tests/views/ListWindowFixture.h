#pragma once

#include <QCoreApplication>
#include <QEnterEvent>
#include <QMouseEvent>
#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "accessibility/AccessibilityFixture.h"
#include "app/RecordingRowCoordinator.h"
#include "listwindow/ListWindowView.h"
#include "support/Signal.h"
#include "views/ListRowWidget.h"
#include "views/ListWindowRowList.h"
#include "views/ListWindowWidget.h"

namespace viewtest {

using tarnwick::ListWindowView;

// The list window's widget over the simulated application's windows
// ("Documents", main, and "Downloads"), drawing whatever content the test
// puts in `content`, with a coordinator and menu actions that record what
// they are asked.
class ListWindowTest : public corvane::testing::AccessibilityTest {
  protected:
    // Rows for the windows, in this order, each with a divider but the last.
    std::vector<ListWindowView::Row> rowsFor(const std::vector<platform::AXUIElementRef>& handles) {
        std::vector<ListWindowView::Row> rows;
        for (const auto& handle : handles) {
            auto window = std::make_shared<corvane::Application::Window>(handle);
            rows.push_back({window, window->id(), true});
        }
        if (!rows.empty())
            rows.back().hasDivider = false;
        return rows;
    }

    ListWindowView::MenuEntry entry(const std::string& name,
                                    const std::vector<std::string>& commands) {
        ListWindowView::MenuEntry entry;
        entry.name = name;
        entry.icon = platform::Image::systemSymbol("gear");
        entry.select = [this, name] { chosen.push_back("select " + name); };
        for (const auto& command : commands)
            entry.submenu.push_back(
                {command, [this, command, name] { chosen.push_back(command + " " + name); }});
        return entry;
    }

    // "Files" selected and a favourite, "Editor" and "Notes" tracked.
    ListWindowView::Content windowsContent(const std::vector<platform::AXUIElementRef>& handles) {
        ListWindowView::Content result;
        result.menu.label = "Files";
        result.menu.favorites = {entry("Files", {"Unfavorite"})};
        result.menu.tracked = {entry("Editor", {"Favorite", "Hide"}),
                               entry("Notes", {"Favorite", "Hide"})};
        result.rows = rowsFor(handles);
        return result;
    }

    platform::qt::ListWindowWidget& show(ListWindowView::Content shown) {
        content = std::move(shown);
        widget = std::make_unique<platform::qt::ListWindowWidget>([this] { return content; },
                                                                  changed, coordinator);
        widget->show();
        QCoreApplication::processEvents();
        return *widget;
    }

    // Draws the content anew, as a change of the model does.
    void redraw(ListWindowView::Content shown) {
        content = std::move(shown);
        changed.emit();
        QCoreApplication::processEvents();
    }

    // The rows in their order on the panel.
    std::vector<platform::qt::ListRowWidget*> rowWidgets() const {
        if (!widget->rowList())
            return {};
        return widget->rowList()->rows();
    }

    ListWindowView::Content content;
    quillbox::Signal<> changed;
    tarnwick::testing::RecordingRowCoordinator coordinator;
    std::vector<std::string> chosen;
    std::unique_ptr<platform::qt::ListWindowWidget> widget;
};

// A click as the pointer makes it: it goes to the widget under the point
// (widgets that let the mouse through don't count) and on to its parents
// while nobody takes it.
inline void clickAt(QWidget* root, QPoint point) {
    QWidget* target = root->childAt(point);
    if (!target)
        target = root;
    const QPointF local = target->mapFrom(root, point);
    const QPointF global = target->mapToGlobal(local);
    QMouseEvent press(QEvent::MouseButtonPress, local, global, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(target, &press);
    QMouseEvent release(QEvent::MouseButtonRelease, local, global, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QCoreApplication::sendEvent(target, &release);
}

inline void clickOn(QWidget* widget) {
    clickAt(widget->window(), widget->mapTo(widget->window(), widget->rect().center()));
}

inline void hover(QWidget* widget, bool inside) {
    if (inside) {
        const QPointF centre = widget->rect().center();
        QEnterEvent enter(centre, centre, widget->mapToGlobal(centre));
        QCoreApplication::sendEvent(widget, &enter);
    } else {
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(widget, &leave);
    }
}

}  // namespace viewtest
