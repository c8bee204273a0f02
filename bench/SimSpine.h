#pragma once

#include <memory>

#include "app/RootCoordinator.h"
#include "platform/sim/SimDesktop.h"
#include "settings/DefaultShortcutMigration.h"
#include "support/DefaultsManager.h"
#include "support/StandardOutput.h"

namespace benchsupport {

// The root coordinator on the simulated desktop with its sample
// applications, the preferences migrated as at a start, and the printed
// lines going nowhere.
struct SimSpine {
    explicit SimSpine(tarnwick::RootCoordinator::ChildFactories factories = {}) {
        desktop.populateSampleApplications();
        quillbox::DefaultsManager::clearMigrations();
        tarnwick::runPreferenceMigrations();
        root = tarnwick::RootCoordinator::make(std::move(factories));
    }
    const quillbox::CapturedOutput quiet;
    platform::sim::SimDesktop desktop;
    const platform::ScopedInstall install{desktop.services()};
    std::shared_ptr<tarnwick::RootCoordinator> root;
};

}  // namespace benchsupport
