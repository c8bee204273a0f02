#pragma once

#include <cstddef>
#include <string_view>

namespace platform {

// How deep the containers of a property list's raw bytes nest, found
// without building the list: the reader of either form recurses once per
// level, so bytes nested deeper than a list may be must be refused before
// they reach it. Counting stops at the limit, so the cost is one pass over
// the bytes whatever they hold.
class PropertyListNesting {
  public:
    // The deepest any property list of ours may nest.
    static constexpr std::size_t deepestAllowed = 512;

    // True when the bytes, in either form, nest no deeper than the limit.
    // Binary bytes whose object table can't be walked (references out of
    // range, a cycle) count as too deep: no reader could build them safely.
    static bool withinLimit(std::string_view bytes, std::size_t limit = deepestAllowed);

    static bool binaryWithinLimit(std::string_view bytes, std::size_t limit);
    static bool xmlWithinLimit(std::string_view text, std::size_t limit);
};

}  // namespace platform
