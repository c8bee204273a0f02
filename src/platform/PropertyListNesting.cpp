#include "platform/PropertyListNesting.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace platform {

namespace {

constexpr std::string_view binaryMagic = "bplist00";
constexpr std::size_t binaryTrailerSize = 32;

// The big-endian unsigned integer of `width` bytes at `at`, if it fits.
std::optional<std::uint64_t> bigEndianAt(std::string_view bytes, std::uint64_t at,
                                         std::uint64_t width) {
    if (width == 0 || width > 8 || at > bytes.size() || bytes.size() - at < width)
        return std::nullopt;
    std::uint64_t value = 0;
    for (std::uint64_t i = 0; i < width; ++i)
        value = (value << 8) | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

// The object table of a binary list: where each object starts and how
// wide a reference is.
class BinaryObjectTable {
  public:
    static std::optional<BinaryObjectTable> read(std::string_view bytes) {
        if (bytes.size() < binaryMagic.size() + binaryTrailerSize)
            return std::nullopt;
        const std::uint64_t trailer = bytes.size() - binaryTrailerSize;
        const auto offsetSize = bigEndianAt(bytes, trailer + 6, 1);
        const auto referenceSize = bigEndianAt(bytes, trailer + 7, 1);
        const auto objectCount = bigEndianAt(bytes, trailer + 8, 8);
        const auto top = bigEndianAt(bytes, trailer + 16, 8);
        const auto offsetTable = bigEndianAt(bytes, trailer + 24, 8);
        if (!offsetSize || !referenceSize || !objectCount || !top || !offsetTable ||
            *offsetSize == 0 || *offsetSize > 8 || *referenceSize == 0 || *referenceSize > 8 ||
            *objectCount == 0 || *objectCount > bytes.size() || *top >= *objectCount ||
            *offsetTable > trailer || (trailer - *offsetTable) / *offsetSize < *objectCount)
            return std::nullopt;
        return BinaryObjectTable(bytes, *offsetSize, *referenceSize, *objectCount, *top,
                                 *offsetTable);
    }

    std::uint64_t objectCount() const { return objectCount_; }
    std::uint64_t top() const { return top_; }

    // The objects a container refers to, in order; empty for anything else.
    // Nothing when the object can't be read.
    std::optional<std::vector<std::uint64_t>> childrenOf(std::uint64_t object) const {
        const auto start = bigEndianAt(bytes_, offsetTable_ + object * offsetSize_, offsetSize_);
        const auto marker = start ? bigEndianAt(bytes_, *start, 1) : std::nullopt;
        if (!marker)
            return std::nullopt;
        const unsigned kind = static_cast<unsigned>(*marker >> 4);
        const bool array = kind == 0xA || kind == 0xB || kind == 0xC;
        const bool dictionary = kind == 0xD;
        if (!array && !dictionary)
            return std::vector<std::uint64_t>{};
        std::uint64_t count = *marker & 0xF;
        std::uint64_t at = *start + 1;
        if (count == 0xF) {
            const auto countMarker = bigEndianAt(bytes_, at, 1);
            if (!countMarker || (*countMarker >> 4) != 0x1 || (*countMarker & 0xF) > 3)
                return std::nullopt;
            const std::uint64_t width = std::uint64_t{1} << (*countMarker & 0xF);
            const auto counted = bigEndianAt(bytes_, at + 1, width);
            if (!counted)
                return std::nullopt;
            count = *counted;
            at += 1 + width;
        }
        const std::uint64_t references = dictionary ? count * 2 : count;
        if (count > bytes_.size() || at > bytes_.size() ||
            (bytes_.size() - at) / referenceSize_ < references)
            return std::nullopt;
        std::vector<std::uint64_t> children;
        children.reserve(static_cast<std::size_t>(references));
        for (std::uint64_t i = 0; i < references; ++i) {
            const auto child = bigEndianAt(bytes_, at + i * referenceSize_, referenceSize_);
            if (!child || *child >= objectCount_)
                return std::nullopt;
            children.push_back(*child);
        }
        return children;
    }

  private:
    BinaryObjectTable(std::string_view bytes, std::uint64_t offsetSize, std::uint64_t referenceSize,
                      std::uint64_t objectCount, std::uint64_t top, std::uint64_t offsetTable)
        : bytes_(bytes),
          offsetSize_(offsetSize),
          referenceSize_(referenceSize),
          objectCount_(objectCount),
          top_(top),
          offsetTable_(offsetTable) {}

    std::string_view bytes_;
    std::uint64_t offsetSize_, referenceSize_, objectCount_, top_, offsetTable_;
};

// Skips from `at` past the first `terminator`; npos when it never comes.
std::size_t skipPast(std::string_view text, std::size_t at, std::string_view terminator) {
    const auto found = text.find(terminator, at);
    return found == std::string_view::npos ? found : found + terminator.size();
}

// The end of the tag opened at `at` ('<'), past its '>', honouring quoted
// attribute values; npos when it never ends.
std::size_t endOfTag(std::string_view text, std::size_t at) {
    char quote = 0;
    for (std::size_t i = at + 1; i < text.size(); ++i) {
        const char c = text[i];
        if (quote) {
            if (c == quote)
                quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '>') {
            return i + 1;
        }
    }
    return std::string_view::npos;
}

}  // namespace

bool PropertyListNesting::withinLimit(std::string_view bytes, std::size_t limit) {
    if (bytes.substr(0, binaryMagic.size()) == binaryMagic)
        return binaryWithinLimit(bytes, limit);
    return xmlWithinLimit(bytes, limit);
}

// A depth-first walk with its own stack, so that the walk itself can't run
// out of stack; each object's depth is kept, so shared objects cost once.
bool PropertyListNesting::binaryWithinLimit(std::string_view bytes, std::size_t limit) {
    const auto table = BinaryObjectTable::read(bytes);
    if (!table)
        return false;
    enum : std::uint8_t { unvisited, onPath, measured };
    std::vector<std::uint8_t> state(static_cast<std::size_t>(table->objectCount()), unvisited);
    std::vector<std::size_t> depth(state.size(), 0);
    struct Step {
        std::uint64_t object;
        std::vector<std::uint64_t> children;
        std::size_t next = 0;
    };
    std::vector<Step> path;
    const auto enter = [&](std::uint64_t object) {
        auto children = table->childrenOf(object);
        if (!children)
            return false;
        state[object] = onPath;
        path.push_back(Step{object, std::move(*children)});
        return true;
    };
    if (!enter(table->top()))
        return false;
    while (!path.empty()) {
        Step& step = path.back();
        if (step.next == step.children.size()) {
            std::size_t deepest = 0;
            for (const auto child : step.children)
                deepest = std::max(deepest, depth[child]);
            depth[step.object] = step.children.empty() ? 0 : deepest + 1;
            state[step.object] = measured;
            path.pop_back();
            continue;
        }
        const auto child = step.children[step.next++];
        if (state[child] == onPath)
            return false;  // a cycle
        if (state[child] == measured)
            continue;
        if (path.size() > limit || !enter(child))
            return false;
    }
    return depth[table->top()] <= limit;
}

// Counts open elements; the list's own <plist> and a value element at the
// bottom add two levels to its containers.
bool PropertyListNesting::xmlWithinLimit(std::string_view text, std::size_t limit) {
    std::size_t open = 0;
    for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at)) {
        const auto rest = text.substr(at);
        if (rest.starts_with("<!--")) {
            at = skipPast(text, at, "-->");
        } else if (rest.starts_with("<![CDATA[")) {
            at = skipPast(text, at, "]]>");
        } else if (rest.starts_with("<?")) {
            at = skipPast(text, at, "?>");
        } else {
            const auto end = endOfTag(text, at);
            if (end == std::string_view::npos)
                break;
            if (rest.starts_with("</")) {
                open -= open > 0 ? 1 : 0;
            } else if (!rest.starts_with("<!") && text[end - 2] != '/' && ++open > limit + 2) {
                return false;
            }
            at = end;
        }
        if (at == std::string_view::npos)
            break;
    }
    return true;
}

}  // namespace platform
