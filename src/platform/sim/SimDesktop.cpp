#include "platform/sim/SimDesktop.h"

#include "support/Fatal.h"

namespace platform::sim {

namespace {

SimRunningApplication::Info ownInfo() {
    SimRunningApplication::Info info;
    info.processIdentifier = SimDesktop::ownProcessIdentifier;
    info.bundleIdentifier = SimBundles::mainBundleIdentifier;
    info.bundleURL = SimBundles::mainBundlePath;
    info.localizedName = "Tarnwick";
    return info;
}

SimRunningApplication::Info sampleInfo(pid_t pid, std::string bundleIdentifier, std::string name,
                                       std::filesystem::path location) {
    SimRunningApplication::Info info;
    info.processIdentifier = pid;
    info.bundleIdentifier = std::move(bundleIdentifier);
    info.icon = Image::file(location / "Contents/Resources/AppIcon.icns");
    info.bundleURL = std::move(location);
    info.localizedName = std::move(name);
    return info;
}

}  // namespace

SimDesktop::SimDesktop() : SimDesktop(std::make_unique<SimMainLoop>(), nullptr) {}

SimDesktop::SimDesktop(MainLoop& externalLoop) : SimDesktop(nullptr, &externalLoop) {}

SimDesktop::SimDesktop(std::unique_ptr<SimMainLoop> ownLoop, MainLoop* externalLoop)
    : ownLoop_(std::move(ownLoop)),
      mainLoop_(ownLoop_ ? *ownLoop_ : *externalLoop),
      workspace_(mainLoop_),
      accessibility_(mainLoop_, &workspace_),
      application_(workspace_),
      eventMonitors_(mainLoop_, [this] { return application_.isActive(); }),
      processLauncher_(ownProcessIdentifier),
      loginItemService_(mainLoop_),
      keyboardLayouts_(mainLoop_),
      preferences_(mainLoop_),
      own_(std::make_shared<SimRunningApplication>(ownInfo())) {
    workspace_.setCurrentApplication(own_);
}

SimDesktop::~SimDesktop() = default;

SimMainLoop& SimDesktop::loop() {
    if (!ownLoop_)
        quillbox::fatalError("This simulated desktop runs on another main loop");
    return *ownLoop_;
}

std::vector<std::shared_ptr<SimRunningApplication>> SimDesktop::populateSampleApplications() {
    std::vector<std::shared_ptr<SimRunningApplication>> apps{
        workspace_.addRunning(sampleInfo(fileManagerProcessIdentifier, "com.apple.finder", "Finder",
                                         "/System/Library/CoreServices/Finder.app")),
        workspace_.addRunning(
            sampleInfo(301, "com.example.TextEdit", "TextEdit", "/Applications/TextEdit.app")),
        workspace_.addRunning(
            sampleInfo(302, "com.example.Preview", "Preview", "/Applications/Preview.app")),
        workspace_.addRunning(
            sampleInfo(303, "com.example.Notes", "Notes", "/Applications/Notes.app")),
    };
    for (std::size_t i = 1; i < apps.size(); ++i) {
        const auto& info = apps[i]->info();
        bundles_.addBundle(*info.bundleURL, info.bundleIdentifier,
                           PropertyList::Dictionary{{"CFBundleName", *info.localizedName}});
        workspace_.setApplicationURL(*info.bundleIdentifier, *info.bundleURL);
    }
    const char* titles[][3] = {{"Documents", "Downloads", "Pictures"},
                               {"Notes.txt", "Letter.rtf", nullptr},
                               {"Photo.jpg", nullptr, nullptr},
                               {nullptr, nullptr, nullptr}};
    for (std::size_t i = 0; i < apps.size(); ++i) {
        for (const char* title : titles[i]) {
            if (title)
                accessibility_.addWindow(apps[i]->processIdentifier(),
                                         SimWindowSetup::titled(title));
        }
    }
    workspace_.setFrontmostApplication(apps.front());
    return apps;
}

Services SimDesktop::services() {
    Services services;
    services.mainLoop = &mainLoop_;
    services.workspace = &workspace_;
    services.eventMonitors = &eventMonitors_;
    services.application = &application_;
    services.toolkit = &toolkit_;
    services.statusBar = &statusBar_;
    services.eventTap = &eventTap_;
    services.loginItemService = &loginItemService_;
    services.updater = &updater_;
    services.processLauncher = &processLauncher_;
    services.bundles = &bundles_;
    services.fileManager = &fileManager_;
    services.fileViewer = &fileViewer_;
    services.accessibility = &accessibility_;
    services.keyboardLayouts = &keyboardLayouts_;
    services.hotKeys = &hotKeys_;
    services.preferences = &preferences_;
    services.powerManagement = &powerManagement_;
    return services;
}

}  // namespace platform::sim
