#include "app/TrackingDesktop.h"
#include "tracking/AppOrder.h"
#include "tracking/AppsMonitor.h"

namespace tarnwick::testing {
namespace {

using Strings = std::vector<std::string>;

class AppsMonitorTest : public TrackingDesktop {
  protected:
    // Counts the change events of a monitor made now.
    AppsMonitor& startMonitor() {
        monitor = std::make_unique<AppsMonitor>();
        changes = monitor->runningAppsChanged().connect([this] { ++changeCount; });
        return *monitor;
    }
    Strings tracked() const { return names(monitor->runningApps(), AppGrouping::track); }

    std::unique_ptr<AppsMonitor> monitor;
    platform::Subscription changes;
    int changeCount = 0;
};

TEST_F(AppsMonitorTest, OnlyOrdinaryAppsDirectlyInTheApplicationsFolderAreEligible) {
    auto& workspace = desktop.workspace();
    auto placed = [&](pid_t pid, const std::string& name, const std::string& location,
                      PropertyList::Dictionary info = {{"CFBundlePackageType", "APPL"}}) {
        addBundle(location, "com.example." + name, std::move(info));
        workspace.addRunning(appInfo(pid, name, "com.example." + name, location));
    };
    placed(401, "InSubfolder", "/Applications/Utilities/InSubfolder.app");
    placed(402, "InHome", "/Users/tarnwick/Applications/InHome.app");
    placed(403, "SystemApp", "/System/Applications/SystemApp.app");
    placed(404, "Agent", "/Applications/Agent.app", {{"LSUIElement", true}});
    placed(405, "Daemon", "/Applications/Daemon.app", {{"LSBackgroundOnly", true}});
    placed(406, "TextFlag", "/Applications/TextFlag.app", {{"LSUIElement", "1"}});
    placed(407, "Slashed", "/Applications/Slashed.app/");
    // A "Finder.app" outside the system location is just another bundle.
    placed(408, "Finder.app", "/Users/tarnwick/Finder.app");
    workspace.addRunning(appInfo(409, "NoInfo", "com.example.NoInfo", "/Applications/NoInfo.app"));
    desktop.bundles().addBundle("/Applications/NoInfo.app", "com.example.NoInfo", std::nullopt);
    workspace.addRunning(
        appInfo(410, "NoBundle", "com.example.NoBundle", "/Applications/Gone.app"));
    workspace.addRunning(appInfo(411, "NoLocation", "com.example.NoLocation", std::nullopt));

    // The file manager has no bundle to read: its system location is enough.
    startMonitor();
    EXPECT_EQ(tracked(), (Strings{"Finder", "Notes", "Preview", "Slashed", "Tarnwick", "TextEdit",
                                  "TextFlag"}));
    EXPECT_EQ(monitor->runningApps().size(), 1u);
}

TEST_F(AppsMonitorTest, OtherApplicationsFoldersCanBeTheSystems) {
    // On Linux the applications folders are the desktop entries' folders.
    struct Folders : platform::FileManager {
        std::optional<std::filesystem::path> urlForDirectory(platform::SearchPathDirectory,
                                                             platform::SearchPathDomain,
                                                             bool) override {
            return std::nullopt;
        }
        bool checkResourceIsReachable(const std::filesystem::path&) override { return false; }
        std::vector<std::filesystem::path> applicationsDirectories() const override {
            return {"/usr/share/applications", "/usr/local/share/applications/"};
        }
    } folders;
    auto services = desktop.services();
    services.fileManager = &folders;
    platform::ScopedInstall onLinux(services);
    addBundle("/usr/local/share/applications/gimp.desktop", "gimp.desktop");
    desktop.workspace().addRunning(
        appInfo(420, "GIMP", "gimp.desktop", "/usr/local/share/applications/gimp.desktop"));

    startMonitor();
    EXPECT_EQ(tracked(), (Strings{"Finder", "GIMP"}));
}

TEST_F(AppsMonitorTest, NamesSortByScalarValuesOfTheComposedFormKeepingTies) {
    std::vector<platform::RunningApplicationRef> apps;
    pid_t pid = 500;
    for (const char* name : {"apple", "Zebra", "Twin", "E\u0301cole", "Yak", "\u00C9clair"}) {
        apps.push_back(std::make_shared<SimRunningApplication>(appInfo(++pid, name, {}, {})));
    }
    apps.push_back(std::make_shared<SimRunningApplication>(appInfo(600, "Twin", {}, {})));
    sortInAppOrder(apps);

    Strings sorted;
    for (const auto& app : apps)
        sorted.push_back(*app->localizedName() + "/" + std::to_string(app->processIdentifier()));
    EXPECT_EQ(sorted, (Strings{"Twin/503", "Twin/600", "Yak/505", "Zebra/502", "apple/501",
                               "\u00C9clair/506", "E\u0301cole/504"}));
}

TEST_F(AppsMonitorTest, SortingAndShowingFallBackDifferently) {
    auto app = [](std::optional<std::string> name, std::optional<std::string> identifier,
                  std::optional<std::filesystem::path> location) {
        return SimRunningApplication(
            appInfo(700, std::move(name), std::move(identifier), std::move(location)));
    };
    const auto unnamed = app({}, "com.example.zeta", "/Applications/Alpha.app");
    EXPECT_EQ(sortName(unnamed), "Alpha.app");
    EXPECT_EQ(displayName(unnamed), "com.example.zeta");
    const auto onlyIdentifier = app({}, "com.example.zeta", {});
    EXPECT_EQ(sortName(onlyIdentifier), "com.example.zeta");
    EXPECT_EQ(displayName(onlyIdentifier), "com.example.zeta");
    const auto nothing = app({}, {}, {});
    EXPECT_EQ(sortName(nothing), nothing.description());
    EXPECT_EQ(displayName(nothing), "Unknown");

    EXPECT_EQ(displayIcon(nothing), platform::Image::systemSymbol("circle"));
    EXPECT_EQ(displayIcon(*textEdit), *textEdit->icon());

    // In the menu's order the unnamed application stands by its folder name.
    addBundle("/Applications/Alpha.app", "com.example.zeta");
    desktop.workspace().addRunning(appInfo(701, {}, "com.example.zeta", "/Applications/Alpha.app"));
    startMonitor();
    EXPECT_EQ(tracked().front(), "com.example.zeta");
}

TEST_F(AppsMonitorTest, StoredSetsDecideTheGroupAndFavoriteWinsAnOverlap) {
    storeFavorites({"com.example.Preview", "com.example.Notes"});
    storeHidden({"com.example.TextEdit", "com.example.Notes"});
    addBundle("/Applications/Anonymous.app", std::nullopt);
    desktop.workspace().addRunning(
        appInfo(430, "Anonymous", std::nullopt, "/Applications/Anonymous.app"));
    startMonitor();
    const auto& apps = monitor->runningApps();
    EXPECT_EQ(names(apps, AppGrouping::favorite), (Strings{"Notes", "Preview"}));
    EXPECT_EQ(names(apps, AppGrouping::hidden), (Strings{"TextEdit"}));
    EXPECT_EQ(names(apps, AppGrouping::track), (Strings{"Finder", "Tarnwick"}));
    // Eligible but without an identifier: kept, never offered.
    EXPECT_EQ(names(apps, AppGrouping::noTrack), (Strings{"Anonymous"}));
}

TEST_F(AppsMonitorTest, LaunchedAppsJoinTheirGroupInOrderIneligibleOnesInNoTrack) {
    storeFavorites({"com.example.Maps"});
    startMonitor();
    launchOrdinaryApp(440, "Maps");
    launchOrdinaryApp(441, "Calendar");
    addBundle("/Applications/Utilities/Console.app", "com.example.Console");
    desktop.workspace().launch(
        appInfo(442, "Console", "com.example.Console", "/Applications/Utilities/Console.app"));
    settle();

    const auto& apps = monitor->runningApps();
    EXPECT_EQ(names(apps, AppGrouping::favorite), (Strings{"Maps"}));
    EXPECT_EQ(names(apps, AppGrouping::track),
              (Strings{"Calendar", "Finder", "Notes", "Preview", "Tarnwick", "TextEdit"}));
    EXPECT_EQ(names(apps, AppGrouping::noTrack), (Strings{"Console"}));
    EXPECT_EQ(changeCount, 3);
}

TEST_F(AppsMonitorTest, TerminationRemovesTheAppAndClearsItsCacheEntry) {
    startMonitor();
    const auto element = monitor->appElement(textEdit);
    ASSERT_TRUE(element);
    EXPECT_EQ(monitor->appElement(textEdit), element);

    desktop.workspace().terminate(textEdit->processIdentifier());
    settle();
    EXPECT_EQ(tracked(), (Strings{"Finder", "Notes", "Preview", "Tarnwick"}));
    EXPECT_EQ(changeCount, 1);
    EXPECT_FALSE(monitor->appElementCache().contains(textEdit));
    // Once ended, it gets no element and leaves no entry.
    EXPECT_EQ(monitor->appElement(textEdit), nullptr);
    EXPECT_TRUE(monitor->appElementCache().empty());

    // The same bundle launched again is a new object with an entry of its own.
    auto again = launchOrdinaryApp(301, "TextEdit");
    settle();
    ASSERT_TRUE(monitor->appElement(again));
    EXPECT_EQ(monitor->appElementCache().size(), 1u);
}

TEST_F(AppsMonitorTest, TerminatingAnAppInNoGroupOnlyClearsItsCacheEntry) {
    addBundle("/Applications/Agent.app", "com.example.Agent", {{"LSUIElement", true}});
    auto agent = desktop.workspace().addRunning(
        appInfo(450, "Agent", "com.example.Agent", "/Applications/Agent.app"));
    startMonitor();
    ASSERT_TRUE(monitor->appElement(agent));

    desktop.workspace().terminate(450);
    desktop.workspace().postNotificationWithoutApplication(
        platform::WorkspaceNotification::didTerminateApplication);
    settle();
    EXPECT_EQ(changeCount, 0);
    EXPECT_TRUE(monitor->appElementCache().empty());
}

TEST_F(AppsMonitorTest, RegroupingMovesBetweenTheStoredSetsAndNoTrackStoresNothing) {
    storeFavorites({"com.example.TextEdit"});
    storeHidden({"com.example.Notes"});
    startMonitor();
    monitor->setGrouping("com.example.TextEdit", AppGrouping::hidden);
    EXPECT_TRUE(defaults().getValue(favoriteApps).empty());
    EXPECT_EQ(defaults().getValue(hiddenApps),
              (std::set<std::string>{"com.example.Notes", "com.example.TextEdit"}));
    EXPECT_TRUE(names(monitor->runningApps(), AppGrouping::favorite).empty());
    EXPECT_EQ(names(monitor->runningApps(), AppGrouping::hidden), (Strings{"Notes", "TextEdit"}));
    EXPECT_EQ(changeCount, 1);

    // Back to the ordinary list, at its sorted place.
    monitor->setGrouping("com.example.TextEdit", AppGrouping::track);
    EXPECT_EQ(defaults().getValue(hiddenApps), std::set<std::string>{"com.example.Notes"});
    EXPECT_EQ(tracked(), (Strings{"Finder", "Preview", "Tarnwick", "TextEdit"}));

    // No tracking drops the app until the next start and stores nothing.
    monitor->setGrouping("com.example.Preview", AppGrouping::noTrack);
    EXPECT_EQ(tracked(), (Strings{"Finder", "Tarnwick", "TextEdit"}));
    EXPECT_TRUE(names(monitor->runningApps(), AppGrouping::noTrack).empty());
    EXPECT_TRUE(defaults().getValue(favoriteApps).empty());
    EXPECT_EQ(defaults().getValue(hiddenApps), std::set<std::string>{"com.example.Notes"});
    EXPECT_EQ(names(AppsMonitor().runningApps(), AppGrouping::track),
              (Strings{"Finder", "Preview", "Tarnwick", "TextEdit"}));

    // An app that isn't running only changes the stored sets.
    const auto before = monitor->runningApps();
    changeCount = 0;
    monitor->setGrouping("com.example.Absent", AppGrouping::favorite);
    EXPECT_EQ(defaults().getValue(favoriteApps), std::set<std::string>{"com.example.Absent"});
    EXPECT_TRUE(sameRunningApps(monitor->runningApps(), before));
    EXPECT_EQ(changeCount, 0);
}

TEST_F(AppsMonitorTest, GoingAwayStopsFollowingTheWorkspace) {
    using platform::WorkspaceNotification;
    auto& workspace = desktop.workspace();
    auto observers = [&] {
        return workspace.observerCount(WorkspaceNotification::didLaunchApplication) +
               workspace.observerCount(WorkspaceNotification::didTerminateApplication);
    };
    const auto before = observers();
    startMonitor();
    EXPECT_EQ(observers(), before + 2);
    launchOrdinaryApp(460, "Late");  // its notification is under way
    monitor.reset();
    EXPECT_EQ(observers(), before);
    settle();
}

}  // namespace
}  // namespace tarnwick::testing
