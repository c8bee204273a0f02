#include "shortcuts/SRCommon.h"

#include "platform/Platform.h"

namespace lirixkro {

SRLayoutDirection SRApplicationLayoutDirection() {
    const auto* application = platform::installed().application;
    return application ? application->userInterfaceLayoutDirection()
                       : SRLayoutDirection::leftToRight;
}

}  // namespace lirixkro
