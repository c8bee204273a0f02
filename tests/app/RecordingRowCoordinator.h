#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "listwindow/ListWindowView.h"

namespace tarnwick::testing {

// Remembers which window action was asked for, on which window, in order.
class RecordingRowCoordinator final : public ListWindowView::ListRow::Coordinator {
  public:
    using WindowRef = ListWindowView::WindowRef;
    struct Call {
        std::string action;
        WindowRef window;
    };

    void raiseWindow(const WindowRef& window) override { record("raiseWindow", window); }
    void closeWindow(const WindowRef& window) override { record("closeWindow", window); }
    void toggleMinimized(const WindowRef& window) override { record("toggleMinimized", window); }
    void toggleFullScreen(const WindowRef& window) override { record("toggleFullScreen", window); }

    std::vector<std::string> actions() const {
        std::vector<std::string> names;
        for (const auto& call : calls)
            names.push_back(call.action);
        return names;
    }

    std::vector<Call> calls;
    // Runs after each call is recorded, as the real actions go on to
    // refresh the list.
    std::function<void()> onCall;

  private:
    void record(std::string action, const WindowRef& window) {
        calls.push_back({std::move(action), window});
        if (onCall)
            onCall();
    }
};

}  // namespace tarnwick::testing
