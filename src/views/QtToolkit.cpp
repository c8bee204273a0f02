#include "views/QtToolkit.h"

#include "views/QtApplication.h"
#include "views/QtWindow.h"

namespace platform::qt {

namespace {

QtWindow::ShowPreparation preparationBy(QtApplication* application) {
    if (!application)
        return {};
    return [application](QWidget* widget) { application->prepareWindow(widget); };
}

}  // namespace

std::shared_ptr<Window> QtToolkit::makePanel() {
    return std::make_shared<QtWindow>(QtWindow::Kind::panel, windowStyle::defaultMask,
                                      preparationBy(application_));
}

std::shared_ptr<Window> QtToolkit::makeWindow(WindowStyleMask styleMask) {
    return std::make_shared<QtWindow>(QtWindow::Kind::window, styleMask,
                                      preparationBy(application_));
}

}  // namespace platform::qt
