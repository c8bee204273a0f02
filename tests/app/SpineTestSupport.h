#pragma once

#include <memory>
#include <string>

#include "app/ActivationController.h"
#include "app/CoordinatorProtocol.h"
#include "app/StandardWindowTearDown.h"
#include "platform/Platform.h"
#include "platform/sim/SimDesktop.h"
#include "settings/DefaultShortcutMigration.h"
#include "support/DefaultsManager.h"

namespace spine {

// A coordinator with an ordinary window, as Settings and About have.
class WindowCoordinator final : public tarnwick::CoordinatorProtocol {
  public:
    WindowCoordinator(Ref parent, tarnwick::ActivationController& activation, std::string title)
        : CoordinatorProtocol(std::move(parent)), activation_(activation) {
        auto window = platform::toolkit().makeWindow(4099);
        window->setTitle(title);
        setRootController(std::make_shared<platform::WindowController>(window));
    }
    void willFinish() override {
        ++willFinishCount;
        tarnwick::standardWindowTearDown(*this, activation_);
    }
    int willFinishCount = 0;

  private:
    tarnwick::ActivationController& activation_;
};

// A simulated desktop with its sample applications, installed as the
// platform, with the preferences migrated as at a program start.
class DesktopFixture {
  public:
    DesktopFixture() {
        desktop.populateSampleApplications();
        quillbox::DefaultsManager::clearMigrations();
        tarnwick::runPreferenceMigrations();
        quillbox::DefaultsManager::clearMigrations();
    }

    platform::sim::SimDesktop desktop;
    platform::ScopedInstall install{desktop.services()};
};

}  // namespace spine
