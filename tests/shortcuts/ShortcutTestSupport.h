#pragma once

#include <gtest/gtest.h>

#include "platform/Platform.h"
#include "platform/sim/SimHotKeys.h"
#include "platform/sim/SimKeyboardLayouts.h"
#include "platform/sim/SimMainLoop.h"
#include "shortcuts/SRCommon.h"
#include "support/Log.h"

namespace lirixkro::testing {

// Key codes and modifiers the tests press, by their US layout places.
inline constexpr SRKeyCode keyK = 40, keyJ = 38;
inline constexpr SRModifierFlags commandShift = SRCommandFlag | SRShiftFlag;

// The simulated layouts (US to begin with) and hot keys, installed as the
// platform, with the log captured.
class ShortcutTest : public ::testing::Test {
  protected:
    platform::Services services() {
        platform::Services services;
        services.mainLoop = &loop;
        services.keyboardLayouts = &layouts;
        services.hotKeys = &hotKeys;
        return services;
    }

    platform::sim::SimMainLoop loop;
    platform::sim::SimKeyboardLayouts layouts{loop};
    platform::sim::SimHotKeys hotKeys;
    platform::ScopedInstall install{services()};
    quillbox::CapturedLog log;
};

}  // namespace lirixkro::testing
