#pragma once

#include <memory>

#include "listwindow/ListWindowView.h"
#include "platform/Window.h"

namespace platform::qt {

// The panel's content view: the list window's widgets, drawn from the
// view's content and redrawn on each of its changes, with the view's
// coordinator behind their actions.
std::shared_ptr<ContentView> makeListWindowContentView(tarnwick::ListWindowView& view);

}  // namespace platform::qt
