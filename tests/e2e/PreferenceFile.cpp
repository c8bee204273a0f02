#include "PreferenceFile.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/PropertyListCodec.h"

namespace e2e {

using platform::PropertyList;

PropertyList::Dictionary readPreferenceFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), {});
    auto list = platform::PropertyListCodec::decode(std::string_view(bytes));
    return list && list->dictionary() ? *list->dictionary() : PropertyList::Dictionary{};
}

void writePreferenceFile(const std::string& path, const PropertyList::Dictionary& preferences) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    const auto bytes = platform::PropertyListCodec::encodeBinary(preferences);
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

std::vector<std::string> stringsUnder(const PropertyList::Dictionary& preferences,
                                      const std::string& key) {
    std::vector<std::string> strings;
    const auto found = preferences.find(key);
    if (found == preferences.end() || !found->second.array())
        return strings;
    for (const auto& item : *found->second.array()) {
        if (const auto* text = item.string())
            strings.push_back(*text);
    }
    return strings;
}

std::string contentsOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace e2e
