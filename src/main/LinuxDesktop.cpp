#include "main/BuildInfo.h"
#include "main/PlatformAssembly.h"
#include "platform/sessionbus/SessionBusScreenSaverInhibition.h"
#include "platform/update/LinuxUpdater.h"
#include "platform/update/RestartHelperLaunch.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Desktop.h"
#include "platform/x11/X11ScreenSaverSuspension.h"
#include "support/Fatal.h"
#include "views/QtApplication.h"
#include "views/QtMainLoop.h"
#include "views/QtStatusBar.h"
#include "views/QtToolkit.h"
#include "views/QtUpdateUserDriver.h"
#include "views/ScreenCoordinates.h"

namespace tarnwick {

namespace {

// The X11 backend for everything the desktop offers, with Qt for our own
// windows, status item, application object and event loop.
class LinuxDesktop final : public PlatformAssembly {
  public:
    LinuxDesktop(platform::qt::QtMainLoop& loop,
                 std::unique_ptr<platform::x11::X11Connection> display)
        : desktop_(openDesktop(loop, std::move(display))),
          toolkit_(&application_),
          powerConnection_(openPowerConnection()),
          screenSaverSuspension_(powerConnection_->connection()),
          power_(QStringLiteral("Tarnwick"), screenSaverSuspension_),
          updater_(loop, updateDialogues_, updaterConfiguration()) {}

    platform::Services services() override {
        auto services = desktop_->services();
        services.application = &application_;
        services.toolkit = &toolkit_;
        services.statusBar = &statusBar_;
        services.updater = &updater_;
        services.powerManagement = &power_;
        return services;
    }

  private:
    static platform::update::UpdaterConfiguration updaterConfiguration() {
        platform::update::UpdaterConfiguration configuration;
        configuration.version = build::number;
        configuration.displayVersion = build::version;
        configuration.feedURL = build::updateFeedURL;
        configuration.publicEDKey = build::updatePublicEDKey;
        std::error_code error;
        configuration.executable = std::filesystem::read_symlink("/proc/self/exe", error);
        configuration.relaunch = platform::update::relaunchThroughRestartHelper;
        return configuration;
    }

    static std::unique_ptr<platform::x11::X11Desktop> openDesktop(
        platform::qt::QtMainLoop& loop, std::unique_ptr<platform::x11::X11Connection> display) {
        platform::x11::X11Desktop::Options options;
        options.mainBundle.shortVersion = build::version;
        options.mainBundle.version = build::number;
        options.mainBundle.copyright = build::copyright;
        options.mainBundle.helpersDirectory = build::helpersFromProgram;
        // The pointer comes in the server's device pixels; our windows are
        // placed in Qt's points.
        options.pixelsPerPoint = platform::qt::ScreenCoordinates::pixelsPerPoint;
        auto desktop =
            platform::x11::X11Desktop::open(loop, std::move(options), std::move(display));
        // The display opened a moment ago; failing now is no state to go on from.
        if (!desktop)
            quillbox::fatalError("tarnwick: lost the X display while starting");
        return desktop;
    }

    // The screen saver is suspended for as long as the connection that asked
    // lives, so power management keeps a connection of its own.
    static std::unique_ptr<platform::x11::X11Connection> openPowerConnection() {
        auto connection = platform::x11::X11Connection::open();
        if (!connection)
            quillbox::fatalError("tarnwick: lost the X display while starting");
        return connection;
    }

    std::unique_ptr<platform::x11::X11Desktop> desktop_;
    platform::qt::QtApplication application_;
    platform::qt::QtToolkit toolkit_;
    platform::qt::QtStatusBar statusBar_;
    std::unique_ptr<platform::x11::X11Connection> powerConnection_;
    platform::x11::X11ScreenSaverSuspension screenSaverSuspension_;
    platform::sessionbus::SessionBusScreenSaverInhibition power_;
    platform::qt::QtUpdateUserDriver updateDialogues_;
    platform::update::LinuxUpdater updater_;
};

}  // namespace

std::unique_ptr<PlatformAssembly> assembleLinuxDesktop(
    platform::qt::QtMainLoop& loop, std::unique_ptr<platform::x11::X11Connection> display) {
    return std::make_unique<LinuxDesktop>(loop, std::move(display));
}

}  // namespace tarnwick
