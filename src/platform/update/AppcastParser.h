#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/update/Appcast.h"

namespace platform::update {

// A feed read from bytes, or what is wrong with it in a few words
// ("it is not XML").
struct AppcastReading {
    std::optional<Appcast> appcast;
    std::string problem;
};

// Feeds are a few hundred kilobytes at most; anything much larger is no feed.
inline constexpr std::size_t maximumFeedBytes = 8 * 1024 * 1024;

// Reads an RSS feed with update items. Items whose archive is for another
// operating system are left out unread. Any damage in an item that is for
// us (no version, an archive without address, length or signature) makes
// the whole feed damaged: a half-read feed could offer the wrong release. A
// document type declaration is refused, since entities are its only use in
// a feed.
AppcastReading parseAppcast(std::string_view bytes);

}  // namespace platform::update
