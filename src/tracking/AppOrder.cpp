#include "tracking/AppOrder.h"

#include <algorithm>
#include <string>
#include <utility>

#include "tracking/AppPresentation.h"
#include "tracking/UnicodeNormalization.h"

namespace tarnwick {

void sortInAppOrder(std::vector<platform::RunningApplicationRef>& applications) {
    // Each name is composed once. UTF-8 compared byte by byte, as unsigned
    // values (which std::string's comparison does), orders exactly as the
    // scalar values it encodes.
    std::vector<std::pair<std::string, platform::RunningApplicationRef>> keyed;
    keyed.reserve(applications.size());
    for (auto& application : applications)
        keyed.emplace_back(canonicallyComposed(sortName(*application)), std::move(application));
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t i = 0; i < keyed.size(); ++i)
        applications[i] = std::move(keyed[i].second);
}

}  // namespace tarnwick
