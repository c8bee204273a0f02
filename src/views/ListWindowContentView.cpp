#include "views/ListWindowContentView.h"

#include "views/ListWindowWidget.h"
#include "views/QtContentView.h"

namespace platform::qt {

std::shared_ptr<ContentView> makeListWindowContentView(tarnwick::ListWindowView& view) {
    return std::make_shared<QtContentView>(new ListWindowWidget([&view] { return view.content(); },
                                                                view.changed(), view.coordinator(),
                                                                nullptr, view.permissionView()));
}

}  // namespace platform::qt
