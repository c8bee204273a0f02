#pragma once

#include <string>

#include "platform/Menu.h"

namespace lirixkro {

// The item's place in its menus: the titles from the top down, joined with
// " → " ("Edit → Find").
std::string SR_path(const platform::MenuItem& item);

}  // namespace lirixkro
