#pragma once

#include "platform/Platform.h"
#include "platform/sim/SimMainLoop.h"
#include "platform/sim/SimPreferencesStore.h"

namespace testsupport {

// A preferences store in memory on a simulated main loop, installed as the
// program's services for as long as it lives. Test fixtures that read and
// write preferences derive from it.
class InstalledPreferences {
  protected:
    platform::sim::SimMainLoop loop;
    platform::sim::SimPreferencesStore store{loop};

    // The services installed, for a test that installs them again with a
    // change of its own.
    platform::Services services() {
        platform::Services table;
        table.mainLoop = &loop;
        table.preferences = &store;
        return table;
    }

  private:
    platform::ScopedInstall install_{services()};
};

}  // namespace testsupport
