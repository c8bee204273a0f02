#pragma once

#include <memory>

#include "support/Signal.h"

namespace tarnwick {

// Tracks the accessibility permission this process runs with. The program
// can do nothing without it, and a process that started without it is
// relaunched once it is granted.
class PermissionRequestViewModel final
    : public std::enable_shared_from_this<PermissionRequestViewModel> {
  public:
    // How often a started poll asks again, in seconds.
    static constexpr double pollInterval = 0.5;

    // Asks the platform, without a prompt, whether this process is trusted.
    static std::shared_ptr<PermissionRequestViewModel> make();

    // The platform's last known answer.
    bool hasAccessibilityPermissions() const { return hasAccessibilityPermissions_; }
    // Fixed at creation: this process started without the permission.
    bool needsRelaunch() const { return needsRelaunch_; }
    // A polling chain has been started in this process. Never set back, so
    // that a process polls in one chain at most.
    bool isPolling() const { return isPolling_; }

    // Asks the platform again, with its prompt, and starts polling unless a
    // chain was started before.
    void requestPermission();
    // One round: asks without a prompt and, while the permission is still
    // missing, asks again after the interval.
    void poll();

    // Sent when a field changes; a write of the same value sends nothing.
    quillbox::Signal<>& changed() { return changed_; }

  private:
    explicit PermissionRequestViewModel(bool trusted);
    void setHasAccessibilityPermissions(bool value);

    bool hasAccessibilityPermissions_;
    const bool needsRelaunch_;
    bool isPolling_ = false;
    quillbox::Signal<> changed_;
};

}  // namespace tarnwick
