#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace platform::update {

// The namespace of the update elements and attributes inside an RSS feed.
inline constexpr const char* appcastNamespace =
    "http://www.andymatuschak.org/xml-namespaces/sparkle";

struct ReleaseNotes {
    enum class Format { html, markdown, plainText };
    Format format = Format::html;
    std::string text;
};

// The archive of a release.
struct Enclosure {
    std::string url;
    std::uint64_t length = 0;
    std::string type;
    std::string edSignature;  // ed25519 over the archive's bytes, base64
    std::string os;           // empty: for every operating system
};

// One release in the feed.
struct AppcastItem {
    std::string title{};
    std::string version;             // compared
    std::string shortVersionString;  // shown; may be empty
    std::string pubDate;
    std::optional<ReleaseNotes> releaseNotes;
    std::string releaseNotesLink;
    std::string link{};                  // the release's web page
    std::optional<std::string> channel;  // none: the default channel
    bool criticalUpdate = false;
    // When given, the update is critical only for versions below it.
    std::string criticalBelowVersion;
    bool informationalUpdate = false;
    // When either is given, the item is informational only for the listed
    // versions, or for versions below the given one.
    std::vector<std::string> informationalForVersions;
    std::string informationalBelowVersion;
    std::string minimumAutoupdateVersion;
    std::optional<Enclosure> enclosure;

    // What the user is shown as the version.
    const std::string& displayVersion() const {
        return shortVersionString.empty() ? version : shortVersionString;
    }
};

struct Appcast {
    std::string title{};
    std::string link{};
    std::vector<AppcastItem> items{};  // the items for this operating system
};

}  // namespace platform::update
