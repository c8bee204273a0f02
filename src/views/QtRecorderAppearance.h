#pragma once

#include <QColor>
#include <QPalette>

#include "recorder/SRRecorderControlStyleComponents.h"
#include "recorder/SRStyleInfo.h"

namespace platform::qt {

// The toolkit's look as the recorder's styles name it: dark when the
// window is darker than its text, high contrast when the two are black and
// white (no softer theme comes that close), graphite when the accent has
// no colour.
lirixkro::SRToolkitAppearance toolkitAppearanceOf(const QPalette& palette,
                                                  Qt::LayoutDirection direction);

// A colour of the platform's catalogue ("controlTextColor",
// "secondaryLabelColor", "disabledControlTextColor") from the palette.
QColor catalogColor(const QPalette& palette, const lirixkro::SRTextAttributes& attributes);

// Makes the application's palette the look of views the recorder has none
// for. Once is enough.
void installApplicationAppearanceSource();

}  // namespace platform::qt
