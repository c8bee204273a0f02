#include "app/CoordinatorProtocol.h"

#include <algorithm>

#include "app/WindowDelegateForCoordinatorFinish.h"
#include "support/Fatal.h"

namespace tarnwick {

void CoordinatorProtocol::finish() {
    // The coordinator may be dropped by its parent during the report below.
    const Ref self = shared_from_this();
    willFinish();
    // Children remove themselves from the live array while they finish, so
    // walk a snapshot of it.
    const std::vector<Ref> children = childCoordinators_;
    for (const auto& child : children)
        child->finish();
    didFinish();
    if (parentCoordinator_)
        parentCoordinator_->childDidFinish(*this);
}

void CoordinatorProtocol::childDidFinish(const CoordinatorProtocol& child) {
    removeChild(childCoordinators_, child);
}

void CoordinatorProtocol::setFinishesOnWindowClose(bool enabled) {
    if (!enabled) {
        windowDelegate_.reset();
        return;
    }
    if (windowDelegate_)
        return;
    windowDelegate_ = std::make_shared<WindowDelegateForCoordinatorFinish>();
    windowDelegate_->setParent(weak_from_this());
    if (const auto& window = rootController().window())
        window->setDelegate(windowDelegate_.get());
}

platform::WindowController& CoordinatorProtocol::rootController() const {
    if (!rootController_)
        quillbox::fatalError("A coordinator's window controller was used before it was set");
    return *rootController_;
}

void removeChild(std::vector<CoordinatorProtocol::Ref>& children,
                 const CoordinatorProtocol& child) {
    auto it = std::find_if(children.begin(), children.end(),
                           [&child](const auto& candidate) { return candidate.get() == &child; });
    if (it != children.end())
        children.erase(it);
}

}  // namespace tarnwick
