#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

#include "accessibility/Application.h"
#include "accessibility/Observer.h"
#include "platform/LifetimeGuard.h"
#include "platform/Subscription.h"

namespace tarnwick {

class ListWindowViewModel;

// Follows the selected application's windows for what their rows draw: a
// window that is retitled, minimised or goes away, and a change of the main
// window. The model lists windows anew only
// for its own causes; this only tells the rows to draw again, so that a
// shown panel draws what is true now. Windows of every age are followed,
// through the application's element, and a new selection is followed from
// the state change that comes with it.
class ListWindowWatch {
  public:
    // With the key of the window's row; nothing when every row may have
    // changed (another window became the main one).
    using WindowChanged = std::function<void(std::optional<std::size_t> windowId)>;

    ListWindowWatch(ListWindowViewModel& model, WindowChanged windowChanged);
    ~ListWindowWatch();
    ListWindowWatch(const ListWindowWatch&) = delete;
    ListWindowWatch& operator=(const ListWindowWatch&) = delete;

  private:
    void followSelection();

    ListWindowViewModel& model_;
    WindowChanged windowChanged_;
    std::shared_ptr<corvane::Application> followed_;
    std::shared_ptr<corvane::Observer> observer_;
    platform::Subscription stateChanges_;
    platform::LifetimeGuard lifetime_;
};

}  // namespace tarnwick
