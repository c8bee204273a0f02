#include "settings/SettingsWindowView.h"

#include <algorithm>

#include "platform/Platform.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsWindowViewModel.h"

namespace tarnwick {

namespace {

using Part = SettingsWindowView::Part;

std::optional<LocalAppView> installedApp(const std::string& bundleIdentifier) {
    const auto location =
        platform::workspace().URLForApplicationWithBundleIdentifier(bundleIdentifier);
    if (!location)
        return std::nullopt;
    const auto bundle = platform::bundles().bundleWithPath(*location);
    if (!bundle)
        return std::nullopt;
    return LocalAppView::fromBundle(*bundle);
}

}  // namespace

SettingsWindowView::SettingsWindowView(std::shared_ptr<ViewModel> model, Coordinator& owner,
                                       std::shared_ptr<LoginLaunchController> loginLaunch)
    : defaults(quillbox::DefaultsManager::shared()),
      vm(std::move(model)),
      loginLaunchController(std::move(loginLaunch)),
      coordinator(owner) {}

bool SettingsWindowView::isTabbed() const {
    return platform::application().isOperatingSystemAtLeastVersion(platform::tabbedSettingsVersion);
}

std::vector<SettingsWindowView::Page> SettingsWindowView::pages() const {
    if (!isTabbed()) {
        return {{std::nullopt,
                 {Part::shortcutRow, Part::launchAtLoginRow, Part::automaticUpdatesSwitch,
                  Part::releaseChannelPicker, Part::checkNowButton}}};
    }
    return {{Tab{"General", "gear"},
             {Part::shortcutRow, Part::launchAtLoginRow, Part::hiddenAppsGroup}},
            {Tab{"Updates", "sparkle"},
             {Part::automaticUpdatesSwitch, Part::releaseChannelPicker, Part::checkNowButton}}};
}

ShortcutView SettingsWindowView::shortcutView() {
    auto model = vm;
    return ShortcutView(
        quillbox::Binding<bool>([this] { return isRecording; },
                                [this](bool recording) { isRecording = recording; }),
        quillbox::Binding<lirixkro::SRShortcutRef>([model] { return model->shortcut(); },
                                                   [model](lirixkro::SRShortcutRef shortcut) {
                                                       model->setShortcut(std::move(shortcut));
                                                   }));
}

void SettingsWindowView::setLaunchesAtLogin(bool value) {
    platform::mainLoop().post(
        [controller = loginLaunchController, value] { controller->setEnabled(value); });
}

std::vector<SettingsWindowView::HiddenAppRow> SettingsWindowView::hiddenAppRows() const {
    const auto stored = defaults.getValue(hiddenApps);
    std::vector<std::string> identifiers(stored.begin(), stored.end());
    std::sort(identifiers.begin(), identifiers.end());
    std::vector<HiddenAppRow> rows;
    for (auto& identifier : identifiers) {
        if (auto app = installedApp(identifier))
            rows.push_back({std::move(identifier), std::move(*app)});
    }
    return rows;
}

void SettingsWindowView::unhide(const std::string& bundleIdentifier) const {
    coordinator.appsMonitor().setGrouping(bundleIdentifier, AppGrouping::track);
}

bool SettingsWindowView::automaticallyChecksForUpdates() const {
    return vm->automaticallyChecksForUpdates();
}

void SettingsWindowView::setAutomaticallyChecksForUpdates(bool value) const {
    vm->setAutomaticallyChecksForUpdates(value);
}

void SettingsWindowView::checkNow() const {
    if (auto delegate = coordinator.delegate())
        delegate->updateController()->checkForUpdates();
}

const std::vector<SettingsWindowView::ChannelOption>& SettingsWindowView::channelOptions() {
    static const std::vector<ChannelOption> options{{"Official Release", "default"},
                                                    {"Beta", "staging"}};
    return options;
}

std::optional<std::size_t> SettingsWindowView::selectedChannel() const {
    const auto channel = defaults.getValue(releaseChannel);
    const auto& options = channelOptions();
    for (std::size_t i = 0; i < options.size(); ++i) {
        if (options[i].tag == channel)
            return i;
    }
    return std::nullopt;
}

void SettingsWindowView::selectChannel(std::size_t option) const {
    defaults[releaseChannel] = channelOptions().at(option).tag;
}

std::vector<platform::Subscription> SettingsWindowView::observeChanges(
    const std::function<void()>& redraw) {
    std::vector<platform::Subscription> subscriptions;
    subscriptions.push_back(defaults.objectWillChange().connect(redraw));
    subscriptions.push_back(vm->changed().connect(redraw));
    subscriptions.push_back(loginLaunchController->changed().connect(redraw));
    return subscriptions;
}

}  // namespace tarnwick
