#include "app/ApplicationEntry.h"

#include "platform/Platform.h"
#include "settings/DefaultShortcutMigration.h"

namespace tarnwick {

namespace {

// The main menu holds the two commands that show the stored state. Where
// the desktop shows no global menu bar, it stays out of sight.
std::shared_ptr<platform::Menu> makeMainMenu(AppDelegate& delegate) {
    auto menu = platform::Menu::make("Tarnwick");
    menu->addItem(platform::MenuItem::make("Open Application Support Folder", "", [&delegate] {
        delegate.openApplicationSupportDirectory();
    }));
    menu->addItem(platform::MenuItem::make("Show Preferences File", "",
                                           [&delegate] { delegate.showApplicationPreferences(); }));
    return menu;
}

}  // namespace

ApplicationEntry ApplicationEntry::start(RootCoordinator::ChildFactories factories,
                                         RootCoordinator::ContentViewFactory contentView) {
    runPreferenceMigrations();
    ApplicationEntry entry;
    entry.rootCoordinator = RootCoordinator::make(std::move(factories), std::move(contentView));
    entry.delegate = std::make_unique<AppDelegate>(entry.rootCoordinator);
    platform::application().setMainMenu(makeMainMenu(*entry.delegate));
    return entry;
}

}  // namespace tarnwick
