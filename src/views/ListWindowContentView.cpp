#include "views/ListWindowContentView.h"

#include "views/ListWindowWidget.h"
#include "views/QtContentView.h"

namespace platform::qt {

std::shared_ptr<ContentView> makeListWindowContentView(tarnwick::ListWindowView& view) {
    auto* widget = new ListWindowWidget([&view] { return view.content(); }, view.changed(),
                                        view.coordinator(), nullptr, view.permissionView());
    widget->follow(view);
    return std::make_shared<QtContentView>(widget);
}

}  // namespace platform::qt
