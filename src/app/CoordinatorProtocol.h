#pragma once

#include <memory>
#include <vector>

#include "platform/WindowController.h"

namespace tarnwick {

class WindowDelegateForCoordinatorFinish;

// A node of the tree that owns every window of the program. A parent holds
// its children and a child holds its parent, both strongly: the pair is a
// deliberate cycle that finish() breaks when the child reports its end.
class CoordinatorProtocol : public std::enable_shared_from_this<CoordinatorProtocol> {
  public:
    using Ref = std::shared_ptr<CoordinatorProtocol>;

    virtual ~CoordinatorProtocol() = default;

    const Ref& parentCoordinator() const { return parentCoordinator_; }
    std::vector<Ref>& childCoordinators() { return childCoordinators_; }
    const std::vector<Ref>& childCoordinators() const { return childCoordinators_; }
    std::shared_ptr<WindowDelegateForCoordinatorFinish>& windowDelegate() {
        return windowDelegate_;
    }

    // Ends this coordinator and its subtree: its own tear-down, then the
    // children's end, then the report to the parent. Running it twice is
    // harmless.
    virtual void finish();
    // The coordinator's own tear-down.
    virtual void willFinish() = 0;
    // Between the children's end and the report to the parent.
    virtual void didFinish() {}
    // A child reports its end; it is dropped by identity.
    virtual void childDidFinish(const CoordinatorProtocol& child);
    // With true, closing the coordinator's window ends the coordinator.
    virtual void setFinishesOnWindowClose(bool enabled);

    // The controller of the coordinator's window; using it while empty is a
    // programming fault.
    platform::WindowController& rootController() const;
    void setRootController(std::shared_ptr<platform::WindowController> controller) {
        rootController_ = std::move(controller);
    }
    bool hasRootController() const { return static_cast<bool>(rootController_); }

  protected:
    explicit CoordinatorProtocol(Ref parent = nullptr) : parentCoordinator_(std::move(parent)) {}

  private:
    Ref parentCoordinator_;
    std::vector<Ref> childCoordinators_;
    std::shared_ptr<WindowDelegateForCoordinatorFinish> windowDelegate_;
    std::shared_ptr<platform::WindowController> rootController_;
};

// Removes the first element identical to child, keeping the order of the
// rest. Identity alone decides.
void removeChild(std::vector<CoordinatorProtocol::Ref>& children, const CoordinatorProtocol& child);

}  // namespace tarnwick
