#include "platform/x11/X11Desktop.h"

#include <unistd.h>

namespace platform::x11 {

namespace {

const char* displayNameOrDefault(const std::string& name) {
    return name.empty() ? nullptr : name.c_str();
}

}  // namespace

std::unique_ptr<X11Desktop> X11Desktop::open(MainLoop& loop, Options options,
                                             std::unique_ptr<X11Connection> inputConnection) {
    const char* display = displayNameOrDefault(options.displayName);
    if (!inputConnection)
        inputConnection = X11Connection::open(display);
    auto accessibility = X11Accessibility::open(loop, display);
    if (!inputConnection || !accessibility)
        return nullptr;
    return std::unique_ptr<X11Desktop>(new X11Desktop(
        loop, std::move(options), std::move(inputConnection), std::move(accessibility)));
}

X11Desktop::X11Desktop(MainLoop& loop, Options options,
                       std::unique_ptr<X11Connection> inputConnection,
                       std::unique_ptr<X11Accessibility> accessibility)
    : loop_(loop),
      entries_(options.directories),
      icons_(options.directories),
      defaultFileManager_(xdg::DefaultFileManager::find(entries_)),
      launcher_(loop),
      bundles_(options.mainBundle, options.directories),
      fileManager_(options.directories),
      fileViewer_(launcher_, defaultFileManager_),
      loginItems_(loop,
                  xdg::XdgLoginItemService::entryPathIn(options.directories.configHome,
                                                        xdg::XdgBundles::mainBundleIdentifier),
                  options.mainBundle.executable),
      preferences_(std::make_unique<xdg::PlistFileStore>(
          options.preferencesPath.empty()
              ? xdg::PlistFileStore::defaultPath(xdg::XdgBundles::mainBundleIdentifier)
              : options.preferencesPath,
          loop)),
      input_(std::make_unique<X11InputEventSource>(std::move(inputConnection), loop)),
      keyboardLayouts_(X11KeyboardLayouts::create(*input_)),
      rawInput_(X11RawInput::create(*input_, keyboardLayouts_.get())),
      activeWindow_(std::make_unique<X11ActiveWindowTracker>(*input_)),
      eventMonitors_(std::make_unique<X11EventMonitors>(
          rawInput_.get(), X11EventMonitors::activeProcessIs(*activeWindow_, ::getpid()),
          std::move(options.pixelsPerPoint))),
      hotKeys_(std::make_unique<X11HotKeys>(*input_)),
      eventTap_(std::make_unique<X11EventTap>(rawInput_.get())),
      accessibility_(std::move(accessibility)),
      identities_(entries_, icons_, defaultFileManager_, ownIdentity(*bundles_.mainBundle()),
                  options.mainBundle.executable) {
    if (defaultFileManager_)
        bundles_.setFileManagerEntry(defaultFileManager_->entry());
    workspace_ = std::make_unique<X11Workspace>(X11Workspace::Parts{
        loop_, *accessibility_, *input_, *activeWindow_, launcher_, identities_});
}

X11Desktop::~X11Desktop() = default;

xdg::XdgRunningApplication::Identity X11Desktop::ownIdentity(Bundle& mainBundle) {
    xdg::XdgRunningApplication::Identity identity;
    identity.bundleIdentifier = mainBundle.bundleIdentifier();
    identity.bundleURL = mainBundle.bundlePath();
    if (const auto* information = mainBundle.infoDictionary()) {
        const auto name = information->find("CFBundleName");
        if (name != information->end()) {
            if (const auto* text = name->second.get<std::string>())
                identity.localizedName = *text;
        }
    }
    return identity;
}

Services X11Desktop::services() {
    Services services;
    services.mainLoop = &loop_;
    services.workspace = workspace_.get();
    services.eventMonitors = eventMonitors_.get();
    services.accessibility = accessibility_.get();
    services.keyboardLayouts = keyboardLayouts_.get();
    services.hotKeys = hotKeys_.get();
    services.eventTap = eventTap_.get();
    services.processLauncher = &launcher_;
    services.bundles = &bundles_;
    services.fileManager = &fileManager_;
    services.fileViewer = &fileViewer_;
    services.loginItemService = &loginItems_;
    services.preferences = preferences_.get();
    return services;
}

}  // namespace platform::x11
