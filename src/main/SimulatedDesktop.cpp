#include "main/BuildInfo.h"
#include "main/PlatformAssembly.h"
#include "platform/sim/SimDesktop.h"
#include "views/QtApplication.h"
#include "views/QtMainLoop.h"
#include "views/QtStatusBar.h"
#include "views/QtToolkit.h"

namespace tarnwick {

namespace {

// The simulated desktop keeps its own application object, so that
// activating the program shows in the simulated workspace; quitting it ends
// the real event loop.
class SimulatedDesktop final : public PlatformAssembly {
  public:
    explicit SimulatedDesktop(platform::qt::QtMainLoop& loop) : desktop_(loop) {
        desktop_.bundles().setVersion(build::version, build::number);
        desktop_.populateSampleApplications();
        desktop_.application().setTerminateHandler(platform::qt::quitEventLoop);
    }

    platform::Services services() override {
        auto services = desktop_.services();
        services.toolkit = &toolkit_;
        services.statusBar = &statusBar_;
        return services;
    }

  private:
    platform::sim::SimDesktop desktop_;
    platform::qt::QtToolkit toolkit_;
    platform::qt::QtStatusBar statusBar_;
};

}  // namespace

std::unique_ptr<PlatformAssembly> assembleSimulatedDesktop(platform::qt::QtMainLoop& loop) {
    return std::make_unique<SimulatedDesktop>(loop);
}

}  // namespace tarnwick
