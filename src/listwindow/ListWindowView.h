#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "accessibility/Application.h"
#include "platform/Image.h"
#include "platform/Workspace.h"
#include "support/Signal.h"

namespace tarnwick {

class ListWindowViewModel;
class ListWindowWatch;
class PermissionRequestView;

// The content of the floating panel as data, computed from the list window's
// model each time it is drawn. The widgets draw it and call its actions;
// they decide nothing themselves.
class ListWindowView {
  public:
    using WindowRef = std::shared_ptr<corvane::Application::Window>;

    // What a click on a row asks of the root coordinator.
    class Coordinator {
      public:
        virtual ~Coordinator() = default;
        virtual void raiseWindow(const WindowRef& window) = 0;
    };

    // One window of the list: three round buttons in the manner of a title
    // bar, and the title. Its drawing reads the window's attributes afresh
    // every time, so it always shows what the window says now.
    class ListRow {
      public:
        // What the row's buttons ask of the root coordinator.
        class Coordinator : public ListWindowView::Coordinator {
          public:
            virtual void closeWindow(const WindowRef& window) = 0;
            virtual void toggleMinimized(const WindowRef& window) = 0;
            virtual void toggleFullScreen(const WindowRef& window) = 0;
        };

        // The row's own state: whether the pointer is over it.
        class VM {
          public:
            bool showButtonIcons() const { return showButtonIcons_; }
            // Writing the present value sends no change.
            void setShowButtonIcons(bool show);
            quillbox::Signal<>& changed() { return changed_; }

          private:
            bool showButtonIcons_ = false;
            quillbox::Signal<> changed_;
        };

        enum class Color { red, yellow, green };

        struct TrafficButton {
            std::function<void()> action;
            std::string sfImage;  // the system symbol's name
            Color color = Color::red;
            double opacity = 1.0;        // 0.2 when the window's button is not enabled
            std::string accessibleName;  // "Close", "Minimize", "Full Screen"
        };

        struct Drawing {
            std::array<TrafficButton, 3> buttons;
            std::string title;     // "Unknown" when it can't be read
            bool bold = false;     // the application's main window
            bool italic = false;   // minimised
            double opacity = 1.0;  // 0.5 when minimised

            // Whether a person would see the same row: the actions aside.
            bool looksLike(const Drawing& other) const;
        };

        ListRow(WindowRef window, Coordinator& coordinator, std::shared_ptr<VM> vm);

        Drawing draw() const;
        // The title a row of the window shows: its "AXTitle", or "Unknown".
        static std::string titleOf(const corvane::Application::Window& window);

        const WindowRef& window() const { return window_; }
        VM& vm() const { return *vm_; }

      private:
        WindowRef window_;
        Coordinator& coordinator_;
        std::shared_ptr<VM> vm_;
    };

    // Exactly one of three trees fills the panel.
    enum class Tree {
        permission,   // the accessibility permission is missing
        errorText,    // any other failure to list windows
        menuAndList,  // the application menu above the rows or the empty text
    };

    // One application in the menu. A plain click on the entry selects it; its
    // sub-menu holds the grouping commands.
    struct MenuEntry {
        struct Item {
            std::string title;  // "Favorite", "Hide" or "Unfavorite"
            std::function<void()> action;
        };
        platform::RunningApplicationRef application;
        platform::Image icon;
        std::string name;
        std::function<void()> select;
        std::vector<Item> submenu;
    };

    // The pull-down menu: favourites, a divider (always), the other tracked
    // applications.
    struct Menu {
        std::string label;
        std::vector<MenuEntry> favorites;
        std::vector<MenuEntry> tracked;

        // The same label, applications, names and commands: a menu that
        // looks like the one shown needn't replace it.
        bool looksLike(const Menu& other) const;
    };

    // One window row, keyed by the window's identity.
    struct Row {
        WindowRef window;
        std::size_t id = 0;
        bool hasDivider = false;  // every row but the last
    };

    struct Content {
        Tree tree = Tree::menuAndList;
        std::string errorText;
        Menu menu;
        // "<name> currently has no open windows." when there are no rows.
        std::optional<std::string> emptyText;
        std::vector<Row> rows;
    };

    // The permission request, where there is one, fills the permission tree.
    ListWindowView(ListWindowViewModel& model, ListRow::Coordinator& coordinator,
                   PermissionRequestView* permissionView = nullptr);

    ~ListWindowView();

    // Computed afresh from the model's state. A window that has gone since
    // the model listed it is left out: its row would have nothing to show.
    Content content() const;

    // Sent whenever the model's state is assigned: the widgets redraw.
    quillbox::Signal<>& changed();
    // Sent with a row's key when its window was retitled, minimised or went
    // away: that row is drawn again, or leaves the list. Without a key every
    // row is drawn again.
    quillbox::Signal<std::optional<std::size_t>>& windowChanged() { return windowChanged_; }

    // The panel is about to be shown: the list and its drawing are brought
    // up to date now, so that it shows what is true at the showing.
    void willPresent();
    quillbox::Signal<>& presenting() { return presenting_; }

    ListRow::Coordinator& coordinator() const { return coordinator_; }
    ListWindowViewModel& model() const { return model_; }
    PermissionRequestView* permissionView() const { return permissionView_; }

  private:
    ListWindowViewModel& model_;
    ListRow::Coordinator& coordinator_;
    PermissionRequestView* permissionView_;
    quillbox::Signal<std::optional<std::size_t>> windowChanged_;
    quillbox::Signal<> presenting_;
    std::unique_ptr<ListWindowWatch> watch_;
};

}  // namespace tarnwick
