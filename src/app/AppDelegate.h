#pragma once

#include <memory>

#include "app/RootCoordinator.h"

namespace tarnwick {

// The application's delegate: it forwards the two launch notifications to
// the root coordinator and offers two commands that show the program's
// stored state in the file manager.
class AppDelegate {
  public:
    explicit AppDelegate(std::shared_ptr<RootCoordinator> rootCoordinator);

    // Sets the activation policy and says which one took.
    void applicationWillFinishLaunching();
    void applicationDidFinishLaunching();

    // Shows the user's general application-support folder.
    void openApplicationSupportDirectory();
    // Shows the preferences file, or the library folder while there is none.
    void showApplicationPreferences();

    const std::shared_ptr<RootCoordinator>& rootCoordinator() const { return rootCoordinator_; }

  private:
    const std::shared_ptr<RootCoordinator> rootCoordinator_;
};

}  // namespace tarnwick
