#include "tracking/AppGrouping.h"

#include <algorithm>

namespace tarnwick {

std::string_view toString(AppGrouping grouping) {
    switch (grouping) {
        case AppGrouping::track:
            return "track";
        case AppGrouping::favorite:
            return "favorite";
        case AppGrouping::hidden:
            return "hidden";
        case AppGrouping::noTrack:
            return "noTrack";
    }
    return "unknown";
}

const std::vector<platform::RunningApplicationRef>& appsIn(const RunningApps& apps,
                                                           AppGrouping grouping) {
    static const std::vector<platform::RunningApplicationRef> none;
    auto it = apps.find(grouping);
    return it == apps.end() ? none : it->second;
}

bool sameRunningApps(const RunningApps& a, const RunningApps& b) {
    if (a.size() != b.size())
        return false;
    for (const auto& [grouping, apps] : a) {
        auto other = b.find(grouping);
        if (other == b.end() || other->second.size() != apps.size())
            return false;
        const bool pairwiseEqual =
            std::equal(apps.begin(), apps.end(), other->second.begin(),
                       [](const auto& x, const auto& y) { return x->isEqual(*y); });
        if (!pairwiseEqual)
            return false;
    }
    return true;
}

}  // namespace tarnwick
