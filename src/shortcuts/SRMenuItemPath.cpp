#include "shortcuts/SRMenuItemPath.h"

#include <deque>

namespace lirixkro {

std::string SR_path(const platform::MenuItem& item) {
    // Bounded, so that a menu that holds itself can't loop for ever.
    constexpr int maximumDepth = 1000;
    static const std::string separator = " → ";

    std::deque<std::string> titles = {item.title()};
    auto parent = item.parentItem();
    for (int step = 0; parent && step < maximumDepth; ++step) {
        titles.push_front(parent->title());
        parent = parent->parentItem();
    }
    std::string path;
    for (const auto& title : titles)
        path += title + separator;
    if (path.size() > separator.size())
        path.erase(path.size() - separator.size());
    return path;
}

}  // namespace lirixkro
