#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/ActivationController.h"
#include "app/CoordinatorProtocol.h"
#include "firstrun/AboutWindowView.h"
#include "platform/Window.h"

namespace tarnwick {

// The About window's coordinator: it lives from the About command until the
// window closes, so that a closed window leaves the tree and the next
// command reads the bundle anew.
class AboutCoordinator final : public CoordinatorProtocol {
  public:
    // How the toolkit draws the window's content; without one, the window
    // has none.
    using ContentViewFactory =
        std::function<std::shared_ptr<platform::ContentView>(const AboutWindowView&)>;

    static constexpr platform::WindowStyleMask windowStyle = 4099;
    // The author, with the maker's trade name.
    static constexpr const char* developerName = "Tarnwick contributors (Harrowmere)";
    // The maker's web site; there is none to link to yet.
    static std::optional<std::string> developerNameLink() { return std::nullopt; }

    // Reads the bundle, builds the view and the window, and does not show
    // it. A bundle without its name, version, build or copyright is a
    // programming fault.
    static std::shared_ptr<AboutCoordinator> make(Ref parent,
                                                  ActivationController& activationController,
                                                  ContentViewFactory contentView = {});

    void willFinish() override;

    const AboutWindowView& view() const { return view_; }

  private:
    AboutCoordinator(Ref parent, ActivationController& activationController, AboutWindowView view);

    ActivationController& activationController_;
    AboutWindowView view_;
};

}  // namespace tarnwick
