#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/CoordinatorProtocol.h"
#include "firstrun/LocalAppView.h"
#include "platform/Subscription.h"
#include "services/LoginLaunchController.h"
#include "settings/SettingsCoordinatorDelegate.h"
#include "settings/ShortcutView.h"
#include "support/DefaultsManager.h"
#include "tracking/AppsMonitor.h"

namespace tarnwick {

// The Settings window's content as data: which parts it shows in which
// layout, their texts, symbols, sizes and states, and what each control
// does. The widgets draw it and call its actions; they decide nothing.
class SettingsWindowView {
  public:
    class ViewModel;

    // The owner of the view: what its controls reach beyond the models.
    class Coordinator : public CoordinatorProtocol {
      public:
        virtual AppsMonitor& appsMonitor() const = 0;
        // The root coordinator, while it lives.
        virtual std::shared_ptr<SettingsCoordinatorDelegate> delegate() const = 0;

      protected:
        using CoordinatorProtocol::CoordinatorProtocol;
    };

    // The window's parts, each a row or block of controls.
    enum class Part {
        shortcutRow,             // "Activation Shortcut": the recorder
        launchAtLoginRow,        // "Launch at Login": a switch
        hiddenAppsGroup,         // "Hidden Apps": a disclosure group over the list
        automaticUpdatesSwitch,  // "Automatically Check for Updates"
        releaseChannelPicker,    // "Release Channel": a picker
        checkNowButton,          // "Check Now"
    };

    struct Tab {
        std::string title;
        std::string symbol;  // a system symbol's name
        friend bool operator==(const Tab&, const Tab&) = default;
    };

    // One stack of parts; in the tabbed layout, one tab's.
    struct Page {
        std::optional<Tab> tab;
        std::vector<Part> parts;
        friend bool operator==(const Page&, const Page&) = default;
    };

    // One hidden application that is still installed.
    struct HiddenAppRow {
        std::string bundleIdentifier;
        LocalAppView app;
    };

    struct ChannelOption {
        std::string title;
        std::string tag;  // the stored word
    };

    // The texts of the window.
    static constexpr const char* title = "Settings";
    static constexpr const char* activationShortcutLabel = "Activation Shortcut";
    static constexpr const char* launchAtLoginLabel = "Launch at Login";
    static constexpr const char* hiddenAppsLabel = "Hidden Apps";
    static constexpr const char* unhideLabel = "Unhide";
    static constexpr const char* automaticUpdatesLabel = "Automatically Check for Updates";
    static constexpr const char* releaseChannelLabel = "Release Channel";
    static constexpr const char* checkNowLabel = "Check Now";

    // The sizes, in points. The tabbed window is at least this large and
    // otherwise as large as its content; each tab's stack is spaced so.
    static constexpr int minimumWidth = 350;
    static constexpr int minimumHeight = 100;
    static constexpr int tabStackSpacing = 16;

    SettingsWindowView(std::shared_ptr<ViewModel> vm, Coordinator& coordinator,
                       std::shared_ptr<LoginLaunchController> loginLaunchController =
                           LoginLaunchController::shared());

    // The preferences, which the hidden applications and the channel are
    // read from at every drawing.
    quillbox::DefaultsManager& defaults;
    // Bound to the recorder; nothing else reads it.
    bool isRecording = false;
    std::shared_ptr<ViewModel> vm;
    std::shared_ptr<LoginLaunchController> loginLaunchController;
    // Kept for the layout's disclosure state; the disclosure group keeps its
    // own, closed at first.
    bool showHiddenApps = false;
    Coordinator& coordinator;

    // Tabs from the platform's version that has them, else one centred stack
    // without the hidden applications.
    bool isTabbed() const;
    std::vector<Page> pages() const;

    // The recorder, bound to isRecording and to the model's shortcut.
    ShortcutView shortcutView();

    bool launchesAtLogin() const { return loginLaunchController->isEnabled(); }
    // The switch can't be changed while a change is under way.
    bool canChangeLaunchAtLogin() const { return !loginLaunchController->isThinking(); }
    // Starts the change on the next turn of the main loop.
    void setLaunchesAtLogin(bool value);

    // The stored hidden applications that are installed, sorted by bundle
    // identifier. One that isn't installed has no row and stays stored.
    std::vector<HiddenAppRow> hiddenAppRows() const;
    void unhide(const std::string& bundleIdentifier) const;

    bool automaticallyChecksForUpdates() const;
    void setAutomaticallyChecksForUpdates(bool value) const;
    // Asks the application for a check now; nothing once it has gone.
    void checkNow() const;

    static const std::vector<ChannelOption>& channelOptions();
    // The option of the stored channel; none for a word the picker doesn't
    // offer, which stays stored until the user picks.
    std::optional<std::size_t> selectedChannel() const;
    void selectChannel(std::size_t option) const;

    // Tells the handler of every change that asks for a redraw: the
    // preferences (also from outside), the model's shortcut, the launch at
    // login controller.
    std::vector<platform::Subscription> observeChanges(const std::function<void()>& redraw);
};

}  // namespace tarnwick
