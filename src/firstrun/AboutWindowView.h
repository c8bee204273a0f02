#pragma once

#include <optional>
#include <string>

#include "firstrun/StyledText.h"
#include "platform/Image.h"

namespace tarnwick {

// What the About window shows, as plain values read once: the icon beside
// a column of the name, "v<version> (<build>)", the author line and the
// copyright.
struct AboutWindowView {
    platform::Image appIcon;
    std::string appName;
    std::string version;
    std::string build;
    std::string developerName;
    // The author's web site; with one, the author's name is a link to it.
    std::optional<std::string> developerNameLink;
    std::string copyright;

    // The author line: Markdown with the name as the link's text when there
    // is a link, else plain text.
    struct AuthorLine {
        std::string text;
        bool isMarkdown = false;
        friend bool operator==(const AuthorLine&, const AuthorLine&) = default;
    };

    struct Drawing {
        platform::Image icon;
        StyledText name;         // title
        StyledText versionLine;  // headline, dimmed
        AuthorLine author;
        StyledText copyright;  // caption, italic
    };

    // A name or link that would break the Markdown line is a programming
    // fault.
    Drawing draw() const;
    AuthorLine authorLine() const;
};

}  // namespace tarnwick
