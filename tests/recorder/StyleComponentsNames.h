#pragma once

#include "recorder/SRRecorderControlStyleComponents.h"

// Short names for the style components in tests, where looks are written
// out by the dozen.
namespace lirixkro::testing::styles {
using C = SRRecorderControlStyleComponents;
using A = C::Appearance;
using X = C::Accessibility;
using D = C::LayoutDirection;
using T = C::Tint;
}  // namespace lirixkro::testing::styles
