#include "services/Restarter.h"

#include "platform/Platform.h"
#include "support/StandardOutput.h"

namespace tarnwick::Restarter {

void relaunch() {
    const auto bundle = platform::bundles().mainBundle();
    const auto helper = bundle->pathForAuxiliaryExecutable(helperName);
    auto& launcher = platform::processLauncher();
    // The path travels as one argument, blanks and all.
    const auto error =
        launcher.launch(helper, {"--watch-pid", std::to_string(launcher.processIdentifier()),
                                 "--app", bundle->bundlePath().string()});
    if (!error.empty()) {
        quillbox::printLine(failurePrefix + error);
        return;
    }
    platform::application().terminate();
}

}  // namespace tarnwick::Restarter
