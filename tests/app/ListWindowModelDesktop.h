#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/TrackingDesktop.h"
#include "listwindow/ListWindowViewModel.h"
#include "support/StandardOutput.h"

namespace tarnwick::testing {

// The sample desktop with the list window's model built as at start, the
// file manager selected, and its state changes counted.
class ListWindowModelDesktop : public TrackingDesktop {
  protected:
    using WindowsState = ListWindowViewModel::WindowsState;
    using ErrorState = ListWindowViewModel::ErrorState;

    ListWindowModelDesktop() {
        stateChanges = model->stateChanged().connect([this] { ++changeCount; });
    }

    const WindowsState& windowsState() const {
        const auto* state = std::get_if<WindowsState>(&model->state());
        if (!state)
            throw std::logic_error("the list shows an error");
        return *state;
    }
    std::vector<std::string> titles() const {
        std::vector<std::string> result;
        for (const auto& window : windowsState().windows)
            result.push_back(window->getTitle());
        return result;
    }
    platform::AXUIElementRef addWindow(const AppRef& app, SimWindowSetup setup) {
        return desktop.accessibility().addWindow(app->processIdentifier(), std::move(setup));
    }

    std::shared_ptr<AppsMonitor> monitor = std::make_shared<AppsMonitor>();
    std::shared_ptr<InteractionController> controller =
        std::make_shared<InteractionController>(nullptr);
    std::unique_ptr<ListWindowViewModel> model =
        std::make_unique<ListWindowViewModel>(controller, monitor);
    platform::Subscription stateChanges;
    int changeCount = 0;
    quillbox::CapturedOutput output;
};

}  // namespace tarnwick::testing
