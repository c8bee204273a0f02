#pragma once

#include <functional>
#include <memory>
#include <string>

#include "support/Signal.h"

namespace tarnwick {

// The switch behind launch at login. The state lives with the platform's
// login item service, not in the preferences: isEnabled asks it every time.
// One change at a time: a change asked for while another is under way is
// dropped, not queued, and a failure is one printed line, never shown.
class LoginLaunchController final : public std::enable_shared_from_this<LoginLaunchController> {
  public:
    static constexpr const char* failurePrefix = "Error setting launch at login: ";

    // The one instance of the process, made on first use.
    static const std::shared_ptr<LoginLaunchController>& shared();
    static std::shared_ptr<LoginLaunchController> make();

    // The main application is registered and enabled; any other status of
    // the service reads as false.
    bool isEnabled() const;
    // A change of the registration is under way.
    bool isThinking() const { return isThinking_; }

    // Registers (at once) or unregisters (finishing on a later turn of the
    // main loop). done runs when the change has ended, also when it was
    // dropped.
    void setEnabled(bool value, std::function<void()> done = {});

    // Sent when isThinking has changed; readers then ask isEnabled again.
    quillbox::Signal<>& changed() { return changed_; }

  private:
    LoginLaunchController() = default;
    void setThinking(bool value);
    void finish(const std::string& failure, const std::function<void()>& done);

    bool isThinking_ = false;
    quillbox::Signal<> changed_;
};

}  // namespace tarnwick
