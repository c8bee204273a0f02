#include "firstrun/OnboardingPages.h"

#include "platform/Platform.h"

namespace tarnwick {

OnboardWindowPermissionsView::Drawing OnboardWindowPermissionsView::draw() const {
    return {platform::application().applicationIconImage(),
            {"Welcome to Tarnwick!", TextStyle::largeTitle},
            {"Finder's windows at your mousetip", TextStyle::caption},
            {"Let's get started..."}};
}

OnboardWindowInstructionsView::Drawing OnboardWindowInstructionsView::draw() const {
    return {platform::application().applicationIconImage(),
            {"To activate Tarnwick, you simply need to\ninvoke the following keyboard "
             "shortcut:\n" +
             keyboardShortcut_},
            {"You can change the shortcut in the Settings menu"},
            "OK"};
}

void OnboardWindowInstructionsView::ok() const {
    platform::mainLoop().post([coordinator = coordinator_] {
        if (auto alive = coordinator.lock())
            alive->finish();
    });
}

}  // namespace tarnwick
