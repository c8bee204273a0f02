#pragma once

#include <memory>
#include <set>
#include <string>

namespace platform {

class Updater;

// What the program tells the updater when it asks. The updater holds it
// weakly: its owner keeps it alive.
class UpdaterDelegate {
  public:
    virtual ~UpdaterDelegate() = default;
    // The channels the user follows beside the default one, which every user
    // sees. Asked afresh at every check.
    virtual std::set<std::string> allowedChannelsForUpdater(const Updater& updater) = 0;
};

// The update service: finds newer releases in a feed, talks to the user in
// its own dialogues, and installs what the user accepts.
class Updater {
  public:
    virtual ~Updater() = default;
    // Starts the updater with its standard dialogues and its automatic
    // checks. Called once, by the standard controller.
    virtual void startUpdater(std::weak_ptr<UpdaterDelegate> delegate) = 0;
    // A check the user asked for: it ends in a dialogue whatever it finds.
    virtual void checkForUpdates() = 0;
    // The updater keeps this setting itself; the program keeps no copy.
    virtual bool automaticallyChecksForUpdates() const = 0;
    virtual void setAutomaticallyChecksForUpdates(bool value) = 0;
};

// The updater's standard controller: made with the program's delegate, it
// starts the installed updater with its standard user interface.
class StandardUpdaterController {
  public:
    explicit StandardUpdaterController(std::weak_ptr<UpdaterDelegate> updaterDelegate);

    Updater& updater() const { return updater_; }
    // The menu command: a check the user asked for.
    void checkForUpdates() { updater_.checkForUpdates(); }

  private:
    Updater& updater_;
};

}  // namespace platform
