#pragma once

#include <map>
#include <string_view>
#include <vector>

#include "platform/Workspace.h"

namespace tarnwick {

// Where a running application stands in the application menu. The order of
// the cases is their order in comparisons and in maps keyed by them.
enum class AppGrouping {
    track = 0,     // eligible, neither favourite nor hidden: the menu's second section
    favorite = 1,  // its bundle identifier is a favourite: the menu's first section
    hidden = 2,    // its bundle identifier is hidden: kept, never offered
    noTrack = 3,   // not eligible, or without a bundle identifier: never offered
};

std::string_view toString(AppGrouping grouping);

// The running applications by group, each group in application order. A
// group may be absent or present and empty; readers treat both alike.
using RunningApps = std::map<AppGrouping, std::vector<platform::RunningApplicationRef>>;

// The applications of one group; empty for an absent group.
const std::vector<platform::RunningApplicationRef>& appsIn(const RunningApps& apps,
                                                           AppGrouping grouping);

// Same keys, and under each key the same number of applications, pairwise
// equal by the platform's object equality.
bool sameRunningApps(const RunningApps& a, const RunningApps& b);

}  // namespace tarnwick
