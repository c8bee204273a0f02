#pragma once

#include <memory>

#include "app/AppDelegate.h"

namespace tarnwick {

// The start of the program on an installed platform, up to the event loop:
// preferences migrated first, then the coordinator tree, the delegate and
// the main menu.
struct ApplicationEntry {
    std::shared_ptr<RootCoordinator> rootCoordinator;
    std::unique_ptr<AppDelegate> delegate;

    static ApplicationEntry start(RootCoordinator::ChildFactories factories = {},
                                  RootCoordinator::ContentViewFactory contentView = {});
};

}  // namespace tarnwick
