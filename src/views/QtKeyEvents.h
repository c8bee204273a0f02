#pragma once

#include <QKeyEvent>
#include <optional>

#include "platform/Event.h"

namespace platform::qt {

// A key event of one of our widgets in the platform's numbering, through
// the keyboard layout service's translation of the window system's own key
// code and modifier state. Nothing when the platform can't translate it.
std::optional<Event> platformEventOf(const QKeyEvent& event);

}  // namespace platform::qt
