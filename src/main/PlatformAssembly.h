#pragma once

#include <memory>

#include "platform/Platform.h"

namespace platform::qt {
class QtMainLoop;
}
namespace platform::x11 {
class X11Connection;
}

namespace tarnwick {

// The backends the program runs on, put together once in main(). The
// assembly owns them for the run; its services are what gets installed.
class PlatformAssembly {
  public:
    virtual ~PlatformAssembly() = default;
    virtual platform::Services services() = 0;
};

// The real Linux desktop: Qt for our windows, status item and event loop,
// over this connection to the X server.
std::unique_ptr<PlatformAssembly> assembleLinuxDesktop(
    platform::qt::QtMainLoop& loop, std::unique_ptr<platform::x11::X11Connection> display);

// The simulated desktop with its sample applications, running on Qt's event
// loop with real Qt windows and status item.
std::unique_ptr<PlatformAssembly> assembleSimulatedDesktop(platform::qt::QtMainLoop& loop);

}  // namespace tarnwick
