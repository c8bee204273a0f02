#pragma once

// What a screen reader sees of the programs on the test display: a private
// session bus with the accessibility bus behind it, and the trees of
// accessible objects the programs publish there.
#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "support/ScopedEnvironment.h"

namespace e2e {

// An accessible object as a screen reader reads it: its role's name, its
// name, its place on the screen and its children.
struct AccessibleNode {
    std::string role;
    std::string name;
    int x = 0, y = 0, width = 0, height = 0;
    bool enabled = true;  // a control that takes input now
    std::vector<AccessibleNode> children;

    // This node and every one below it, depth first.
    std::vector<const AccessibleNode*> flattened() const;
    // "[role] name" of this node and every one below it, a line each, for
    // messages of failed tests.
    std::string outline() const;
    // The first node at or below this one with the role and name.
    const AccessibleNode* find(const std::string& role, const std::string& name) const;
};

// A session bus of the test's own, set as DBUS_SESSION_BUS_ADDRESS for the
// programs started after it, with the accessibility bus already up so that
// they publish their objects from their start. One for the test process;
// the tests that read it run a process each, as ctest runs them, since the
// accessibility client library keeps what it read of earlier programs.
class AccessibilityBus {
  public:
    static AccessibilityBus& shared();
    ~AccessibilityBus();
    AccessibilityBus(const AccessibilityBus&) = delete;
    AccessibilityBus& operator=(const AccessibilityBus&) = delete;

    bool isUp() const { return up_; }

    // The tree of the application of that name, once it is published; with
    // a process id, only that process's.
    std::optional<AccessibleNode> application(const std::string& name, double seconds = 5,
                                              pid_t pid = 0);
    // The application's tree once it holds a node of the role and name, as
    // the application's views catch up with what it shows; the last tree
    // read when that never happens.
    std::optional<AccessibleNode> applicationHolding(const std::string& name,
                                                     const std::string& role,
                                                     const std::string& nodeName, double seconds);

    // Does the named action of the first node with the role and name in the
    // tree of that application's process, as a screen reader does; false
    // when there is no such node or action. The program has done it when
    // this returns.
    bool doAction(const std::string& application, pid_t pid, const std::string& role,
                  const std::string& name, const std::string& action);

    // Starts noting pop-up menus as they show; waitForMenu returns the
    // next one, read when it showed.
    void watchMenus();
    std::optional<AccessibleNode> waitForMenu(double seconds = 5);

  private:
    AccessibilityBus();

    testsupport::ScopedEnvironment environment_;
    pid_t daemon_ = -1;
    bool up_ = false;
};

}  // namespace e2e
