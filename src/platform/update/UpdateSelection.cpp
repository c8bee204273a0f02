#include "platform/update/UpdateSelection.h"

#include <algorithm>

#include "platform/update/VersionComparator.h"

namespace platform::update {

namespace {

bool isOnAllowedChannel(const AppcastItem& item, const std::set<std::string>& allowed) {
    return !item.channel || allowed.count(*item.channel) > 0;
}

bool informationalItemApplies(const AppcastItem& item, const std::string& current) {
    if (!item.informationalUpdate)
        return true;
    const bool listsVersions = !item.informationalForVersions.empty();
    const bool hasBound = !item.informationalBelowVersion.empty();
    if (!listsVersions && !hasBound)
        return true;
    const auto& listed = item.informationalForVersions;
    if (listsVersions && std::find(listed.begin(), listed.end(), current) != listed.end())
        return true;
    return hasBound && isNewerVersion(item.informationalBelowVersion, current);
}

bool mayUpdateAutomaticallyFrom(const AppcastItem& item, const std::string& current) {
    return item.minimumAutoupdateVersion.empty() ||
           !isNewerVersion(item.minimumAutoupdateVersion, current);
}

bool isCandidate(const AppcastItem& item, const SelectionContext& context) {
    if (!isOnAllowedChannel(item, context.allowedChannels))
        return false;
    if (!informationalItemApplies(item, context.currentVersion))
        return false;
    return context.userInitiated || mayUpdateAutomaticallyFrom(item, context.currentVersion);
}

}  // namespace

bool isCriticalFor(const AppcastItem& item, const std::string& currentVersion) {
    if (!item.criticalUpdate)
        return false;
    return item.criticalBelowVersion.empty() ||
           isNewerVersion(item.criticalBelowVersion, currentVersion);
}

std::optional<AppcastItem> selectUpdate(const Appcast& appcast, const SelectionContext& context) {
    const AppcastItem* best = nullptr;
    for (const auto& item : appcast.items) {
        if (isCandidate(item, context) && (!best || isNewerVersion(item.version, best->version)))
            best = &item;
    }
    if (!best || !isNewerVersion(best->version, context.currentVersion))
        return std::nullopt;
    const bool skipped =
        !context.skippedVersion.empty() && !isNewerVersion(best->version, context.skippedVersion);
    if (skipped && !context.userInitiated && !isCriticalFor(*best, context.currentVersion))
        return std::nullopt;
    return *best;
}

}  // namespace platform::update
