#include "main/PlatformAssembly.h"
#include "platform/x11/X11Connection.h"
#include "views/QtApplication.h"
#include "views/QtMainLoop.h"
#include "views/QtStatusBar.h"
#include "views/QtToolkit.h"

namespace tarnwick {

namespace {

class LinuxDesktop final : public PlatformAssembly {
  public:
    LinuxDesktop(platform::qt::QtMainLoop& loop,
                 std::unique_ptr<platform::x11::X11Connection> display)
        : loop_(loop), display_(std::move(display)), toolkit_(&application_) {}

    platform::Services services() override {
        platform::Services services;
        services.mainLoop = &loop_;
        services.application = &application_;
        services.toolkit = &toolkit_;
        services.statusBar = &statusBar_;
        return services;
    }

  private:
    platform::qt::QtMainLoop& loop_;
    std::unique_ptr<platform::x11::X11Connection> display_;
    platform::qt::QtApplication application_;
    platform::qt::QtToolkit toolkit_;
    platform::qt::QtStatusBar statusBar_;
};

}  // namespace

std::unique_ptr<PlatformAssembly> assembleLinuxDesktop(
    platform::qt::QtMainLoop& loop, std::unique_ptr<platform::x11::X11Connection> display) {
    return std::make_unique<LinuxDesktop>(loop, std::move(display));
}

}  // namespace tarnwick
