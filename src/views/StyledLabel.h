#pragma once

#include <QFont>

#include "firstrun/StyledText.h"

class QLabel;
class QWidget;

namespace platform::qt {

// The system font in one of the text styles, relative to the desktop's
// font so that the sizes follow its setting.
QFont fontFor(tarnwick::TextStyle style, bool italic = false);

// A label of plain text in its style, centred; its screen-reader name is
// its text.
QLabel* styledLabel(const tarnwick::StyledText& text, QWidget* parent);

}  // namespace platform::qt
