#include "listwindow/ListWindowView.h"

#include <algorithm>
#include <type_traits>

#include "listwindow/ListWindowViewModel.h"
#include "listwindow/ListWindowWatch.h"
#include "settings/SettingsKeys.h"
#include "support/DefaultsManager.h"
#include "tracking/AppPresentation.h"

namespace tarnwick {

namespace {

using Content = ListWindowView::Content;
using MenuEntry = ListWindowView::MenuEntry;
using platform::RunningApplicationRef;

// The menu's actions refresh the model, which makes the widgets draw new
// content and drop the old, with the action being run. So each action
// copies what it needs before it calls anything.

std::function<void()> selecting(ListWindowViewModel& model, RunningApplicationRef application) {
    return [&model, application] {
        auto chosen = application;
        model.selectApp(chosen);
    };
}

std::function<void()> moving(ListWindowViewModel& model, RunningApplicationRef application,
                             AppGrouping target) {
    return [&model, application, target] {
        auto* const subject = &model;
        const auto bundleIdentifier = application->bundleIdentifier();
        if (!bundleIdentifier)
            return;
        subject->appsMonitor().setGrouping(*bundleIdentifier, target);
        subject->refreshWindows();
    };
}

std::vector<MenuEntry::Item> groupingCommands(ListWindowViewModel& model,
                                              const RunningApplicationRef& application,
                                              AppGrouping current) {
    if (current == AppGrouping::favorite)
        return {{"Unfavorite", moving(model, application, AppGrouping::track)}};
    return {{"Favorite", moving(model, application, AppGrouping::favorite)},
            {"Hide", moving(model, application, AppGrouping::hidden)}};
}

std::vector<MenuEntry> menuEntries(ListWindowViewModel& model,
                                   const std::vector<RunningApplicationRef>& applications,
                                   const AppsMonitor::BundleIdentifiers& favorites,
                                   const AppsMonitor::BundleIdentifiers& hidden) {
    std::vector<MenuEntry> entries;
    entries.reserve(applications.size());
    for (const auto& application : applications) {
        // The group is asked afresh, not taken from the snapshot's section:
        // the sub-menu offers what would change the application now.
        const auto current = model.appsMonitor().grouping(*application, favorites, hidden);
        entries.push_back({application, displayIcon(*application), displayName(*application),
                           selecting(model, application),
                           groupingCommands(model, application, current)});
    }
    return entries;
}

// The selection is always set once the model is built; the guard only keeps
// a half-built state from crashing a draw.
std::string selectedName(const ListWindowViewModel::WindowsState& state) {
    return state.selectedApp ? displayName(*state.selectedApp) : std::string();
}

ListWindowView::Menu menu(ListWindowViewModel& model,
                          const ListWindowViewModel::WindowsState& state) {
    auto& defaults = quillbox::DefaultsManager::shared();
    const auto favorites = defaults.getValue(favoriteApps);
    const auto hidden = defaults.getValue(hiddenApps);
    return {selectedName(state),
            menuEntries(model, appsIn(state.apps, AppGrouping::favorite), favorites, hidden),
            menuEntries(model, appsIn(state.apps, AppGrouping::track), favorites, hidden)};
}

// Gone: the platform no longer knows the element. Any other failure to
// read leaves the window listed, and its row shows what it can.
bool hasGone(const corvane::Application::Window& window) {
    try {
        window.attribute<std::string>(corvane::UIElement::Attribute::role);
    } catch (const corvane::AXError& error) {
        return error == corvane::AXError::invalidUIElement;
    }
    return false;
}

std::vector<ListWindowView::Row> rows(const std::vector<ListWindowView::WindowRef>& windows) {
    std::vector<ListWindowView::Row> rows;
    rows.reserve(windows.size());
    for (const auto& window : windows) {
        if (!hasGone(*window))
            rows.push_back({window, window->id(), true});
    }
    if (!rows.empty())
        rows.back().hasDivider = false;
    return rows;
}

Content windowsContent(ListWindowViewModel& model, const ListWindowViewModel::WindowsState& state) {
    Content content;
    content.tree = ListWindowView::Tree::menuAndList;
    content.menu = menu(model, state);
    if (state.windows.empty())
        content.emptyText = selectedName(state) + " currently has no open windows.";
    content.rows = rows(state.windows);
    return content;
}

Content errorContent(const InteractionController::Error& error) {
    Content content;
    if (error.kind() == InteractionController::Error::Kind::needPermission) {
        content.tree = ListWindowView::Tree::permission;
    } else {
        content.tree = ListWindowView::Tree::errorText;
        content.errorText = error.localizedDescription();
    }
    return content;
}

}  // namespace

ListWindowView::ListWindowView(ListWindowViewModel& model, ListRow::Coordinator& coordinator,
                               PermissionRequestView* permissionView)
    : model_(model),
      coordinator_(coordinator),
      permissionView_(permissionView),
      watch_(std::make_unique<ListWindowWatch>(
          model, [this](std::optional<std::size_t> windowId) { windowChanged_.emit(windowId); })) {}

ListWindowView::~ListWindowView() = default;

bool ListWindowView::Menu::looksLike(const Menu& other) const {
    const auto sameEntries = [](const std::vector<MenuEntry>& a, const std::vector<MenuEntry>& b) {
        return std::equal(
            a.begin(), a.end(), b.begin(), b.end(), [](const MenuEntry& x, const MenuEntry& y) {
                return x.application == y.application && x.name == y.name &&
                       std::equal(x.submenu.begin(), x.submenu.end(), y.submenu.begin(),
                                  y.submenu.end(),
                                  [](const auto& i, const auto& j) { return i.title == j.title; });
            });
    };
    return label == other.label && sameEntries(favorites, other.favorites) &&
           sameEntries(tracked, other.tracked);
}

ListWindowView::Content ListWindowView::content() const {
    return std::visit(
        [this](const auto& state) {
            using State = std::decay_t<decltype(state)>;
            if constexpr (std::is_same_v<State, ListWindowViewModel::ErrorState>)
                return errorContent(state.error);
            else
                return windowsContent(model_, state);
        },
        model_.state());
}

quillbox::Signal<>& ListWindowView::changed() {
    return model_.stateChanged();
}

void ListWindowView::willPresent() {
    model_.catchUp();
    presenting_.emit();
}

}  // namespace tarnwick
