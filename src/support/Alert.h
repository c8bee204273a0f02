#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Image.h"
#include "platform/Window.h"
#include "support/UUID.h"
#include "support/Withable.h"

namespace quillbox {

// A modal alert told as a plain value: its texts, its look, and one closure
// per button. The views turn it into a dialogue (createAlert).
struct Alert : Withable<Alert> {
    // How serious the alert is; the toolkit chooses the symbol for it.
    enum class Style { warning, informational, critical };

    // One button. Two actions with equal titles stay two: an action is known
    // by the identifier it was given when it was made, not by its texts.
    struct Action : Withable<Action> {
        std::string title;
        bool isDefault = false;
        std::function<void()> action;  // run on the main loop
        UUID actionID = UUID::make();

        Action(std::string buttonTitle, bool isDefaultAction, std::function<void()> run)
            : title(std::move(buttonTitle)), isDefault(isDefaultAction), action(std::move(run)) {}

        friend bool operator==(const Action& a, const Action& b) {
            return a.actionID == b.actionID;
        }
    };

    // Whether the alert offers a "don't show this again" check box, and what
    // is told of its state when the alert is answered.
    struct SuppressionButtonOption {
        std::function<void(bool checked)> onSubmit;  // run on the main loop
        UUID id = UUID::make();

        static const SuppressionButtonOption& hide();
        static SuppressionButtonOption show(std::function<void(bool checked)> onSubmit);

        friend bool operator==(const SuppressionButtonOption& a, const SuppressionButtonOption& b) {
            return a.id == b.id;
        }
    };

    Alert(std::string alertTitle, std::string alertMessage, std::vector<Action> alertActions)
        : title(std::move(alertTitle)),
          message(std::move(alertMessage)),
          actions(std::move(alertActions)) {}

    std::string title;
    std::string message;
    std::optional<platform::Image> icon;
    SuppressionButtonOption suppressionButtonOption = SuppressionButtonOption::hide();
    std::shared_ptr<platform::ContentView> accessoryView;
    std::optional<Style> severity;
    std::vector<Action> actions;
};

}  // namespace quillbox

template <>
struct std::hash<quillbox::Alert::Action> {
    std::size_t operator()(const quillbox::Alert::Action& action) const noexcept {
        return std::hash<quillbox::UUID>()(action.actionID);
    }
};

template <>
struct std::hash<quillbox::Alert::SuppressionButtonOption> {
    std::size_t operator()(const quillbox::Alert::SuppressionButtonOption& option) const noexcept {
        return std::hash<quillbox::UUID>()(option.id);
    }
};
