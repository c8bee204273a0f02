#include "platform/PropertyListCodec.h"

#include <plist/plist.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "platform/PropertyListNesting.h"

namespace platform {

namespace {

// Dates count from 2001-01-01 in property lists.
constexpr std::int64_t referenceDateOffset = 978307200;

// Texts in property lists are UTF-8. libplist writes a text that isn't as
// an empty UTF-16 string that it then can't read back, so invalid sequences
// are replaced before writing, and refused as damage when reading.
std::size_t validSequenceLength(std::string_view text, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    if (lead < 0x80)
        return 1;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
    if (length == 0 || lead > 0xF4 || at + length > text.size())
        return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80)
            return 0;
    }
    const unsigned char second = byte(at + 1);
    const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
    const bool surrogate = lead == 0xED && second > 0x9F;
    const bool beyondUnicode = lead == 0xF4 && second > 0x8F;
    return overlong || surrogate || beyondUnicode ? 0 : length;
}

bool isValidUTF8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const auto length = validSequenceLength(text, at);
        if (length == 0)
            return false;
        at += length;
    }
    return true;
}

std::string replacingInvalidUTF8(const std::string& text) {
    if (isValidUTF8(text))
        return text;
    std::string valid;
    for (std::size_t at = 0; at < text.size();) {
        const auto length = validSequenceLength(text, at);
        valid += length ? text.substr(at, length) : "\xEF\xBF\xBD";  // U+FFFD
        at += length ? length : 1;
    }
    return valid;
}

// libplist asserts (and so aborts) when it copies out a text or key with a
// NUL inside, which damaged input can hold. Its XML form writes such texts
// whole, so a NUL byte there marks input to refuse before reading it.
bool holdsTextWithNul(plist_t node) {
    char* xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(node, &xml, &length);
    const bool found = xml && std::memchr(xml, 0, length) != nullptr;
    plist_to_xml_free(xml);
    return found;
}

struct PlistDeleter {
    void operator()(plist_t node) const { plist_free(node); }
};
using PlistPtr = std::unique_ptr<void, PlistDeleter>;

plist_t toNode(const PropertyList& value);

plist_t dateNode(const PropertyList::Date& date) {
    using namespace std::chrono;
    auto micros = duration_cast<microseconds>(date.time_since_epoch()).count();
    auto sinceReference = micros - referenceDateOffset * 1000000;
    auto seconds = static_cast<std::int64_t>(std::floor(static_cast<double>(sinceReference) / 1e6));
    auto usec = sinceReference - seconds * 1000000;
    return plist_new_date(static_cast<int32_t>(seconds), static_cast<int32_t>(usec));
}

plist_t toNode(const PropertyList& value) {
    return std::visit(
        [](const auto& v) -> plist_t {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, std::string>) {
                return plist_new_string(replacingInvalidUTF8(v).c_str());
            } else if constexpr (std::is_same_v<T, PropertyList::Data>) {
                return plist_new_data(reinterpret_cast<const char*>(v.data()), v.size());
            } else if constexpr (std::is_same_v<T, bool>) {
                return plist_new_bool(v ? 1 : 0);
            } else if constexpr (std::is_same_v<T, std::int64_t>) {
                // The coder has one integer node; a negative value keeps its
                // two's-complement bits and reads back as negative.
                return plist_new_uint(static_cast<std::uint64_t>(v));
            } else if constexpr (std::is_same_v<T, std::uint64_t>) {
                return plist_new_uint(v);
            } else if constexpr (std::is_same_v<T, double>) {
                return plist_new_real(v);
            } else if constexpr (std::is_same_v<T, PropertyList::Date>) {
                return dateNode(v);
            } else if constexpr (std::is_same_v<T, PropertyList::Array>) {
                plist_t array = plist_new_array();
                for (const auto& item : v)
                    plist_array_append_item(array, toNode(item));
                return array;
            } else {
                plist_t dict = plist_new_dict();
                for (const auto& [key, item] : v) {
                    plist_dict_set_item(dict, replacingInvalidUTF8(key).c_str(), toNode(item));
                }
                return dict;
            }
        },
        value.value());
}

std::optional<PropertyList> fromNode(plist_t node, int depth);

std::optional<PropertyList> arrayFromNode(plist_t node, int depth) {
    PropertyList::Array array;
    const uint32_t count = plist_array_get_size(node);
    array.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        auto item = fromNode(plist_array_get_item(node, i), depth + 1);
        if (!item)
            return std::nullopt;
        array.push_back(std::move(*item));
    }
    return PropertyList(std::move(array));
}

std::optional<PropertyList> dictionaryFromNode(plist_t node, int depth) {
    PropertyList::Dictionary dict;
    plist_dict_iter iter = nullptr;
    plist_dict_new_iter(node, &iter);
    if (!iter)
        return PropertyList(std::move(dict));
    std::optional<PropertyList> result;
    for (;;) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, iter, &key, &item);
        if (!item) {
            result = PropertyList(std::move(dict));
            break;
        }
        auto converted = fromNode(item, depth + 1);
        std::string keyText = key ? key : "";
        std::free(key);
        if (!converted || !isValidUTF8(keyText))
            break;
        dict.insert_or_assign(std::move(keyText), std::move(*converted));
    }
    std::free(iter);
    return result;
}

std::optional<PropertyList> fromNode(plist_t node, int depth) {
    // Deeply nested input is damaged input; refuse it before the stack does.
    if (!node || depth > static_cast<int>(PropertyListNesting::deepestAllowed))
        return std::nullopt;
    switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN: {
            uint8_t v = 0;
            plist_get_bool_val(node, &v);
            return PropertyList(v != 0);
        }
        case PLIST_UINT: {
            uint64_t v = 0;
            plist_get_uint_val(node, &v);
            return PropertyList(static_cast<std::int64_t>(v));
        }
        case PLIST_REAL: {
            double v = 0;
            plist_get_real_val(node, &v);
            return PropertyList(v);
        }
        case PLIST_STRING: {
            char* v = nullptr;
            plist_get_string_val(node, &v);
            std::string text = v ? v : "";
            std::free(v);
            if (!isValidUTF8(text))
                return std::nullopt;
            return PropertyList(std::move(text));
        }
        case PLIST_DATA: {
            char* v = nullptr;
            uint64_t length = 0;
            plist_get_data_val(node, &v, &length);
            PropertyList::Data data(reinterpret_cast<std::uint8_t*>(v),
                                    reinterpret_cast<std::uint8_t*>(v) + (v ? length : 0));
            std::free(v);
            return PropertyList(std::move(data));
        }
        case PLIST_DATE: {
            int32_t sec = 0, usec = 0;
            plist_get_date_val(node, &sec, &usec);
            auto micros = (std::int64_t{sec} + referenceDateOffset) * 1000000 + usec;
            return PropertyList(PropertyList::Date(std::chrono::microseconds(micros)));
        }
        case PLIST_ARRAY:
            return arrayFromNode(node, depth);
        case PLIST_DICT:
            return dictionaryFromNode(node, depth);
        default:
            return std::nullopt;
    }
}

}  // namespace

PropertyList::Data PropertyListCodec::encodeBinary(const PropertyList& value) {
    PlistPtr node(toNode(value));
    char* bytes = nullptr;
    uint32_t length = 0;
    plist_to_bin(node.get(), &bytes, &length);
    PropertyList::Data data(reinterpret_cast<std::uint8_t*>(bytes),
                            reinterpret_cast<std::uint8_t*>(bytes) + (bytes ? length : 0));
    plist_to_bin_free(bytes);
    return data;
}

std::string PropertyListCodec::encodeXML(const PropertyList& value) {
    PlistPtr node(toNode(value));
    char* text = nullptr;
    uint32_t length = 0;
    plist_to_xml(node.get(), &text, &length);
    std::string xml(text ? text : "", text ? length : 0);
    plist_to_xml_free(text);
    return xml;
}

std::optional<PropertyList> PropertyListCodec::decode(std::string_view bytes) {
    if (bytes.empty() || bytes.size() > std::numeric_limits<uint32_t>::max())
        return std::nullopt;
    // The library recurses once per level while reading, writing and
    // freeing, with no limit of its own.
    if (!PropertyListNesting::withinLimit(bytes))
        return std::nullopt;
    plist_t raw = nullptr;
    const auto length = static_cast<uint32_t>(bytes.size());
    if (plist_is_binary(bytes.data(), length)) {
        plist_from_bin(bytes.data(), length, &raw);
    } else {
        plist_from_xml(bytes.data(), length, &raw);
    }
    PlistPtr node(raw);
    if (!node || holdsTextWithNul(node.get()))
        return std::nullopt;
    return fromNode(node.get(), 0);
}

std::optional<PropertyList> PropertyListCodec::decode(const PropertyList::Data& bytes) {
    return decode(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

}  // namespace platform
