#pragma once

#include <optional>
#include <set>
#include <string>

#include "platform/update/Appcast.h"

namespace platform::update {

// What a check knows when it picks the update to offer.
struct SelectionContext {
    std::string currentVersion{};
    std::set<std::string> allowedChannels{};  // beside the default channel
    std::string skippedVersion{};             // empty: none skipped
    bool userInitiated = false;
};

// A critical update can't be skipped: it is critical for every version, or
// for those below the version it names.
bool isCriticalFor(const AppcastItem& item, const std::string& currentVersion);

// The newest item the user may be offered, if it is newer than the running
// version:
// - an item without a channel is for everyone, one with a channel only for
//   those who follow it;
// - an informational item that names the versions it is for applies to
//   those only;
// - an automatic check passes over items that need a newer version than
//   ours to update from (a major upgrade is offered when the user asks), and
//   over versions up to the skipped one unless the update is critical.
std::optional<AppcastItem> selectUpdate(const Appcast& appcast, const SelectionContext& context);

}  // namespace platform::update
