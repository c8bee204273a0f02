#include "platform/update/RestartHelperLaunch.h"

#include "platform/Platform.h"
#include "platform/update/InstallLocation.h"
#include "support/StandardOutput.h"

namespace platform::update {

std::string relaunchThroughRestartHelper(const std::filesystem::path& program) {
    // program is <version folder>/bin/tarnwick; the helper lies in the same
    // version folder.
    const auto helper = program.parent_path().parent_path() / releaseLayout::restartHelper;
    auto& launcher = platform::processLauncher();
    const auto error = launcher.launch(
        helper,
        {"--watch-pid", std::to_string(launcher.processIdentifier()), "--app", program.string()});
    if (!error.empty()) {
        quillbox::printLine("Failed to launch restart helper: " + error);
        return error;
    }
    platform::application().terminate();
    return {};
}

}  // namespace platform::update
