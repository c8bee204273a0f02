#pragma once

#include <vector>

#include "platform/Workspace.h"

namespace tarnwick {

// Sorts applications by sortName, comparing the canonically composed names
// by their Unicode scalar values: case-sensitive and without locale, so
// every capital of the basic Latin alphabet comes before every small letter.
// Stable: applications of equal names keep their order.
void sortInAppOrder(std::vector<platform::RunningApplicationRef>& applications);

}  // namespace tarnwick
