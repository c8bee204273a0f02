#include "main/Run.h"

#include <QApplication>
#include <QSystemTrayIcon>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "app/ApplicationEntry.h"
#include "firstrun/AboutCoordinator.h"
#include "main/BuildInfo.h"
#include "main/PlatformAssembly.h"
#include "main/SignalPipe.h"
#include "main/SingleInstance.h"
#include "platform/x11/X11Connection.h"
#include "settings/SettingsCoordinator.h"
#include "support/StandardOutput.h"
#include "views/FirstRunContentViews.h"
#include "views/ListWindowContentView.h"
#include "views/QtApplication.h"
#include "views/QtImages.h"
#include "views/QtMainLoop.h"
#include "views/SettingsWindowWidget.h"

namespace tarnwick {

namespace {

std::string displayProblem() {
    const char* display = std::getenv("DISPLAY");
    if (!display || !*display)
        return "tarnwick: no X display: DISPLAY is not set";
    return std::string("tarnwick: cannot open the X display \"") + display + "\"";
}

// The program lives in the status area and in its panel: closing its last
// window doesn't end it.
void configure() {
    QApplication::setApplicationName(QStringLiteral("Tarnwick"));
    QApplication::setApplicationVersion(QString::fromLatin1(build::version));
    QApplication::setQuitOnLastWindowClosed(false);
    platform::qt::useApplicationIconForWindows();
}

// The windows of the coordinators that come and go, drawn by the Qt views.
RootCoordinator::ChildFactories childFactories() {
    RootCoordinator::ChildFactories factories;
    factories.about = [](RootCoordinator& root) {
        return AboutCoordinator::make(root.shared_from_this(), root.activationController(),
                                      platform::qt::makeAboutContentView);
    };
    factories.settings = SettingsCoordinator::childFactory(platform::qt::makeSettingsContentView);
    factories.onboardingPages = {platform::qt::makePermissionsPageContentView,
                                 platform::qt::makeInstructionsPageContentView};
    return factories;
}

// A later start opens Settings here, or brings the panel to the pointer.
void answerLaterStarts(SingleInstance& instance, RootCoordinator& root) {
    instance.setRequestHandler([&root](SingleInstance::Request request) {
        if (request == SingleInstance::Request::showPanel) {
            root.presentListWindow();
        } else {
            root.showSettings();
        }
    });
}

// Neither a status-notifier host nor a tray to show the status item in:
// Settings is then reached by starting the program again.
void tellWhenThereIsNoTray() {
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
        quillbox::printLine(
            "tarnwick: no system tray on this desktop; start tarnwick again to open Settings");
    }
}

}  // namespace

int runOnDesktop(const CommandLine& commandLine, int& argc, char** argv) {
    const bool simulated = commandLine.action == CommandLine::Action::simulate;
    std::unique_ptr<platform::x11::X11Connection> display;
    if (!simulated) {
        display = platform::x11::X11Connection::open();
        if (!display) {
            std::fprintf(stderr, "%s (use --simulate to run without one)\n",
                         displayProblem().c_str());
            return 1;
        }
    }

    QApplication application(argc, argv);
    configure();
    platform::qt::QtMainLoop loop;
    // The simulated desktop answers no real chord: any number may run.
    std::unique_ptr<SingleInstance> instance;
    if (!simulated) {
        auto claim = SingleInstance::claim(commandLine.action == CommandLine::Action::showPanel
                                               ? SingleInstance::Request::showPanel
                                               : SingleInstance::Request::showSettings);
        if (!claim.instance)
            return claim.exitStatus;
        instance = std::move(claim.instance);
    }
    auto assembly =
        simulated ? assembleSimulatedDesktop(loop) : assembleLinuxDesktop(loop, std::move(display));
    platform::ScopedInstall installed(assembly->services());

    auto entry = ApplicationEntry::start(childFactories(), [](ListWindowView& view) {
        return platform::qt::makeListWindowContentView(view);
    });
    entry.delegate->applicationWillFinishLaunching();
    platform::mainLoop().post([&entry] { entry.delegate->applicationDidFinishLaunching(); });
    if (instance) {
        answerLaterStarts(*instance, *entry.rootCoordinator);
        platform::mainLoop().post(tellWhenThereIsNoTray);
    }

    // Last, so that a stop asked for during start-up waits in the pipe until
    // the loop runs.
    SignalPipe stopSignals({SIGTERM, SIGINT}, [](int) { platform::qt::quitEventLoop(); });
    return QApplication::exec();
}

}  // namespace tarnwick
