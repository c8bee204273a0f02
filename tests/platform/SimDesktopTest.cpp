#include <gtest/gtest.h>

#include <set>
#include <string>

#include "platform/sim/SimDesktop.h"

using namespace platform;
using platform::sim::SimDesktop;

TEST(SimDesktop, InstallsItsServicesAndRunsOnAGivenLoop) {
    sim::SimMainLoop externalLoop;
    SimDesktop desktop(externalLoop);
    ScopedInstall install(desktop.services());

    EXPECT_EQ(&platform::mainLoop(), &externalLoop);
    EXPECT_EQ(&platform::workspace(), &desktop.workspace());
    EXPECT_EQ(&platform::application(), &desktop.application());
    EXPECT_EQ(&platform::accessibility(), &desktop.accessibility());
    EXPECT_EQ(&platform::keyboardLayouts(), &desktop.keyboardLayouts());
    EXPECT_EQ(&platform::hotKeys(), &desktop.hotKeys());
    EXPECT_EQ(&platform::preferences(), &desktop.preferences());

    // Workspace notifications go through the given loop.
    int launches = 0;
    platform::workspace().addObserverForName(WorkspaceNotification::didLaunchApplication,
                                             [&](const auto&) { ++launches; });
    sim::SimRunningApplication::Info info;
    info.processIdentifier = 900;
    desktop.workspace().launch(info);
    EXPECT_EQ(launches, 0);
    externalLoop.runUntilIdle();
    EXPECT_EQ(launches, 1);
}

TEST(SimDesktop, SampleApplicationsIncludeTheFileManagerInFront) {
    SimDesktop desktop;
    auto samples = desktop.populateSampleApplications();

    ASSERT_GE(samples.size(), 3u);
    EXPECT_EQ(samples.front()->bundleIdentifier(), "com.apple.finder");
    EXPECT_EQ(samples.front()->bundleURL(), "/System/Library/CoreServices/Finder.app");
    EXPECT_EQ(desktop.workspace().frontmostApplication(), samples.front());
    std::set<pid_t> pids{SimDesktop::ownProcessIdentifier};
    for (const auto& app : samples) {
        EXPECT_TRUE(pids.insert(app->processIdentifier()).second);
        if (app != samples.front()) {
            EXPECT_EQ(app->bundleURL()->parent_path(), "/Applications");
        }
    }
    EXPECT_EQ(desktop.workspace().runningApplications().size(), samples.size() + 1);
    EXPECT_EQ(desktop.workspace().currentApplication()->bundleIdentifier(), "harrowmere.Tarnwick");
}

TEST(SimDesktop, MainBundleCarriesTheProgramsInformation) {
    SimDesktop desktop;
    auto bundle = desktop.bundles().mainBundle();
    ASSERT_TRUE(bundle);
    EXPECT_EQ(bundle->bundleIdentifier(), "harrowmere.Tarnwick");
    const auto* info = bundle->infoDictionary();
    ASSERT_TRUE(info);
    for (const char* key : {"CFBundleName", "CFBundleShortVersionString", "CFBundleVersion",
                            "NSHumanReadableCopyright"}) {
        ASSERT_TRUE(info->count(key)) << key;
        EXPECT_TRUE(info->at(key).string()) << key;
    }
    EXPECT_EQ(*info->at("CFBundleName").string(), "Tarnwick");

    EXPECT_EQ(desktop.bundles().bundleWithPath("/Applications/Nowhere.app"), nullptr);
    desktop.bundles().addBundle("/Applications/Notes.app", "com.example.Notes");
    auto notes = desktop.bundles().bundleWithPath("/Applications/Notes.app");
    ASSERT_TRUE(notes);
    EXPECT_EQ(notes->bundleIdentifier(), "com.example.Notes");
    EXPECT_EQ(notes->infoDictionary(), nullptr);
}

TEST(SimDesktop, FileServicesRecordWhatWasAsked) {
    SimDesktop desktop;
    auto& files = desktop.fileManager();
    auto library =
        files.urlForDirectory(SearchPathDirectory::library, SearchPathDomain::user, true);
    ASSERT_TRUE(library);
    const auto preferences = *library / "Preferences/harrowmere.Tarnwick.plist";
    EXPECT_FALSE(files.checkResourceIsReachable(preferences));
    files.addFile(preferences);
    EXPECT_TRUE(files.checkResourceIsReachable(preferences));

    files.setDirectory(SearchPathDirectory::applicationSupport, std::nullopt);
    EXPECT_FALSE(files.urlForDirectory(SearchPathDirectory::applicationSupport,
                                       SearchPathDomain::user, true));
    EXPECT_EQ(files.directoryRequests().size(), 2u);
    EXPECT_EQ(files.reachabilityChecks().size(), 2u);

    desktop.fileViewer().activateFileViewerSelectingURLs({preferences});
    ASSERT_EQ(desktop.fileViewer().selections().size(), 1u);
    EXPECT_EQ(desktop.fileViewer().selections().front().front(), preferences);
}

TEST(SimDesktop, StatusItemsHaveButtonsUnlessTheBarGivesNone) {
    SimDesktop desktop;
    auto& bar = desktop.statusBar();
    auto withButton = bar.statusItemWithLength(variableStatusItemLength);
    ASSERT_NE(withButton->button(), nullptr);
    withButton->button()->setImage(Image::resource("StatusBarIcon"));
    EXPECT_EQ(bar.items().front()->simButton()->image(), Image::resource("StatusBarIcon"));

    bar.setGivesButtons(false);
    auto without = bar.statusItemWithLength(variableStatusItemLength);
    EXPECT_EQ(without->button(), nullptr);
    without->setMenu(Menu::make());
    EXPECT_TRUE(without->menu());
}

TEST(SimDesktop, ServicesThatCanFailReportTheirFailure) {
    SimDesktop desktop;
    auto& login = desktop.loginItemService();
    EXPECT_EQ(login.registerMainApp(), "");
    EXPECT_EQ(login.status(), LoginItemService::Status::enabled);
    login.setFailure("Operation not permitted");
    EXPECT_EQ(login.unregisterMainApp(), "Operation not permitted");
    EXPECT_EQ(login.status(), LoginItemService::Status::enabled);

    auto& launcher = desktop.processLauncher();
    EXPECT_EQ(launcher.launch("/Applications/Tarnwick.app/AppRestartHelper", {"--watch-pid"}), "");
    launcher.setFailure("No such file");
    EXPECT_EQ(launcher.launch("/nowhere", {}), "No such file");
    EXPECT_EQ(launcher.launches().size(), 2u);
    EXPECT_EQ(launcher.processIdentifier(), SimDesktop::ownProcessIdentifier);

    auto& tap = desktop.eventTap();
    tap.setRefusesTaps(true);
    EXPECT_FALSE(tap.tapCreate(eventMaskFor(EventType::keyDown), [](const Event&) {}));
}

TEST(SimDesktop, UpdaterAsksForTheChannelsAtEachCheck) {
    SimDesktop desktop;
    std::set<std::string> channels;
    desktop.updater().setAllowedChannelsProvider([&] { return channels; });
    desktop.updater().checkForUpdates();
    channels = {"beta"};
    desktop.updater().checkForUpdates();
    EXPECT_EQ(desktop.updater().checks(), (std::vector<std::set<std::string>>{{}, {"beta"}}));
}

TEST(SimDesktop, EventTapsSeeMaskedEventsUntilCancelled) {
    SimDesktop desktop;
    int seen = 0;
    Event keyDown;
    keyDown.type = EventType::keyDown;
    Event keyUp;
    keyUp.type = EventType::keyUp;
    auto tap = desktop.eventTap().tapCreate(eventMaskFor(EventType::keyDown),
                                            [&](const Event&) { ++seen; });
    desktop.eventTap().post(keyDown);
    desktop.eventTap().post(keyUp);
    tap.cancel();
    desktop.eventTap().post(keyDown);
    EXPECT_EQ(seen, 1);
}
