#include "firstrun/AboutWindowView.h"

#include <algorithm>

#include "support/Fatal.h"

namespace tarnwick {

namespace {

bool holdsAnyOf(const std::string& text, const std::string& characters) {
    return text.find_first_of(characters) != std::string::npos;
}

}  // namespace

AboutWindowView::Drawing AboutWindowView::draw() const {
    return {appIcon,
            {appName, TextStyle::title},
            {"v" + version + " (" + build + ")", TextStyle::headline, false, true},
            authorLine(),
            {copyright, TextStyle::caption, true}};
}

AboutWindowView::AuthorLine AboutWindowView::authorLine() const {
    if (!developerNameLink)
        return {"Developed by " + developerName, false};
    // Brackets would end the link's text early, and a blank or a
    // parenthesis its address.
    if (holdsAnyOf(developerName, "[]") || developerNameLink->empty() ||
        holdsAnyOf(*developerNameLink, " \t\n()")) {
        quillbox::fatalError("The author line is no valid Markdown link");
    }
    return {"Developed by [" + developerName + "](" + *developerNameLink + ")", true};
}

}  // namespace tarnwick
