#include <utility>

#include "listwindow/ListWindowView.h"

namespace tarnwick {

using ListRow = ListWindowView::ListRow;

void ListRow::VM::setShowButtonIcons(bool show) {
    if (show == showButtonIcons_)
        return;
    showButtonIcons_ = show;
    changed_.emit();
}

bool ListRow::Drawing::looksLike(const Drawing& other) const {
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        const auto& mine = buttons[i];
        const auto& theirs = other.buttons[i];
        if (mine.sfImage != theirs.sfImage || mine.color != theirs.color ||
            mine.opacity != theirs.opacity || mine.accessibleName != theirs.accessibleName)
            return false;
    }
    return title == other.title && bold == other.bold && italic == other.italic &&
           opacity == other.opacity;
}

ListRow::ListRow(WindowRef window, Coordinator& coordinator, std::shared_ptr<VM> vm)
    : window_(std::move(window)), coordinator_(coordinator), vm_(std::move(vm)) {}

namespace {

// A title-bar button counts as enabled only when it is there and says so;
// a button that can't be read is drawn faint rather than hiding the row.
bool isEnabled(const std::shared_ptr<corvane::UIElement>& button) {
    if (!button)
        return false;
    try {
        return button->attribute<bool>("AXEnabled").value_or(false);
    } catch (const corvane::AXError&) {
        return false;
    }
}

constexpr double faintOpacity = 0.2;
constexpr double minimizedTitleOpacity = 0.5;

}  // namespace

std::string ListRow::titleOf(const corvane::Application::Window& window) {
    return window.title().value_or("Unknown");
}

ListRow::Drawing ListRow::draw() const {
    const corvane::Application::Window& window = *window_;
    const bool showIcons = vm_->showButtonIcons();
    const auto symbol = [showIcons](const char* hovered) {
        return std::string(showIcons ? hovered : "circle.fill");
    };
    const auto opacity = [](const std::shared_ptr<corvane::UIElement>& button) {
        return isEnabled(button) ? 1.0 : faintOpacity;
    };
    Coordinator* coordinator = &coordinator_;
    const WindowRef& target = window_;

    Drawing drawing;
    drawing.buttons[0] = {[coordinator, target] { coordinator->closeWindow(target); },
                          symbol("x.circle.fill"), Color::red, opacity(window.closeButton()),
                          "Close"};
    drawing.buttons[1] = {[coordinator, target] { coordinator->toggleMinimized(target); },
                          symbol("minus.circle.fill"), Color::yellow,
                          opacity(window.minimizeButton()), "Minimize"};
    drawing.buttons[2] = {[coordinator, target] { coordinator->toggleFullScreen(target); },
                          symbol("viewfinder.circle.fill"), Color::green,
                          opacity(window.zoomButton()), "Full Screen"};

    drawing.title = titleOf(window);
    drawing.bold = window.isMain();
    drawing.italic = window.isMinimized();
    drawing.opacity = drawing.italic ? minimizedTitleOpacity : 1.0;
    return drawing;
}

}  // namespace tarnwick
