#include "app/ActivationController.h"

#include "platform/Platform.h"
#include "settings/SettingsKeys.h"
#include "support/DefaultsManager.h"
#include "support/StandardOutput.h"

namespace tarnwick {

std::string debugDescription(platform::ActivationPolicy policy) {
    switch (policy) {
        case platform::ActivationPolicy::regular:
            return ".regular";
        case platform::ActivationPolicy::accessory:
            return ".accessory";
        case platform::ActivationPolicy::prohibited:
            return ".prohibited";
    }
    // A policy the platform added later: this switch is what to extend.
    return "unknown - update 13:Tarnwick/ActivationPolicy";
}

void ActivationController::updateActivationPolicy() {
    const auto wanted = openWindows_.empty()
                            ? quillbox::DefaultsManager::shared().getValue(activationPolicy)
                            : platform::ActivationPolicy::regular;
    auto& application = platform::application();
    const auto current = application.activationPolicy();
    if (current == wanted)
        return;
    quillbox::printLine("[Activation] setting policy " + debugDescription(current) + " -> " +
                        debugDescription(wanted));
    application.setActivationPolicy(wanted);
}

void ActivationController::bringToFront(const std::shared_ptr<platform::Window>& window) {
    quillbox::printLine("[Activation] bringToFront: " + window->title() +
                        " (open: " + std::to_string(openWindows_.size()) + ")");
    const bool isNew = !openWindows_.count(window.get());
    openWindows_[window.get()] = window;
    updateActivationPolicy();
    if (isNew) {
        // A window that was just made activates a turn later, once it is on
        // screen; the second turn tells whether activation took.
        platform::mainLoop().post([] {
            platform::application().activate();
            platform::mainLoop().post([] {
                quillbox::printLine(std::string("[Activation] isActive after activate(): ") +
                                    (platform::application().isActive() ? "true" : "false"));
            });
        });
    } else {
        platform::application().activate();
    }
    window->makeKeyAndOrderFront();
}

}  // namespace tarnwick
