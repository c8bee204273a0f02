#include "recorder/SRRecorderControlStyleResourceLoader.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>

#include "shortcuts/LirixkroStrings.h"
#include "shortcuts/SRExceptions.h"
#include "shortcuts/SRResources.h"
#include "support/Log.h"

namespace lirixkro {

using quillbox::Log;

namespace {

std::vector<std::uint32_t> keyOf(const SRRecorderControlStyleComponents& c) {
    return {static_cast<std::uint32_t>(c.appearance()),
            static_cast<std::uint32_t>(c.accessibility()),
            static_cast<std::uint32_t>(c.layoutDirection()), static_cast<std::uint32_t>(c.tint())};
}

std::optional<std::string> readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

std::uint32_t bigEndian(const unsigned char* bytes) {
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 |
           std::uint32_t{bytes[2]} << 8 | std::uint32_t{bytes[3]};
}

}  // namespace

std::optional<platform::CGSize> SRPNGPixelSize(const std::filesystem::path& path) {
    // The signature, then the header chunk: its length, "IHDR", width, height.
    std::array<unsigned char, 24> head{};
    std::ifstream file(path, std::ios::binary);
    if (!file.read(reinterpret_cast<char*>(head.data()), head.size()))
        return std::nullopt;
    static constexpr unsigned char signature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    if (!std::equal(std::begin(signature), std::end(signature), head.begin()) ||
        std::string_view(reinterpret_cast<const char*>(head.data() + 12), 4) != "IHDR") {
        return std::nullopt;
    }
    return platform::CGSize{static_cast<double>(bigEndian(head.data() + 16)),
                            static_cast<double>(bigEndian(head.data() + 20))};
}

SRRecorderControlStyleResourceLoader& SRRecorderControlStyleResourceLoader::shared() {
    static SRRecorderControlStyleResourceLoader loader(SRResourceDirectory());
    return loader;
}

SRRecorderControlStyleResourceLoader::SRRecorderControlStyleResourceLoader(
    std::filesystem::path resourceDirectory)
    : directory_(std::move(resourceDirectory)) {}

std::shared_ptr<const SRStyleInfo> SRRecorderControlStyleResourceLoader::infoForStyle(
    const std::string& identifier) {
    std::lock_guard guard(lock_);
    Log::debug("Fetching info");
    if (auto cached = infoCache_.find(identifier); cached != infoCache_.end()) {
        Log::debug("Info is in cache");
        return cached->second;
    }
    Log::debug("Info is not in cache");
    const std::string name = identifier + "-info";
    const auto json = readFile(directory_ / (name + ".json"));
    if (!json)
        throw SRInternalInconsistencyException(SRFormatObjects("Missing %@", {name}));
    auto info = std::make_shared<const SRStyleInfo>(SRStyleInfoFromJSON(*json, name));
    infoCache_[identifier] = info;
    return info;
}

std::vector<std::string> SRRecorderControlStyleResourceLoader::lookupPrefixesForStyle(
    const std::string& identifier, const SRRecorderControlStyleComponents& components) {
    const auto key = std::make_pair(identifier, keyOf(components));
    {
        std::lock_guard guard(lock_);
        Log::debug("Fetching lookup prefixes");
        if (auto cached = lookupPrefixesCache_.find(key); cached != lookupPrefixesCache_.end()) {
            Log::debug("Lookup prefixes are in cache");
            return cached->second;
        }
        Log::debug("Lookup prefixes are not in cache");
    }
    auto supported = infoForStyle(identifier)->supportedComponents;
    std::stable_sort(supported.begin(), supported.end(), [&](const auto& a, const auto& b) {
        return a.compare(b, components) == SRComparisonResult::orderedAscending;
    });
    std::vector<std::string> prefixes;
    for (const auto& entry : supported)
        prefixes.push_back(SRFormatObjects("%@%@", {identifier, entry.stringRepresentation()}));
    std::lock_guard guard(lock_);
    lookupPrefixesCache_[key] = prefixes;
    return prefixes;
}

SRStyleImage SRRecorderControlStyleResourceLoader::imageNamed(
    const std::string& name, const std::string& identifier,
    const SRRecorderControlStyleComponents& components) {
    const auto key = std::make_tuple(identifier, keyOf(components), name);
    {
        std::lock_guard guard(lock_);
        Log::debug("Fetching image name");
        if (auto cached = imageCache_.find(key); cached != imageCache_.end()) {
            Log::debug("Image name is in cache");
            return cached->second;
        }
        Log::debug("Image name is not in cache");
    }
    for (const auto& prefix : lookupPrefixesForStyle(identifier, components)) {
        if (auto image = imageWithResolvedName(SRFormatObjects("%@-%@", {prefix, name}))) {
            std::lock_guard guard(lock_);
            imageCache_[key] = *image;
            return *image;
        }
    }
    throw SRInternalInconsistencyException(SRFormatObjects("Missing image named %@", {name}));
}

std::optional<SRStyleImage> SRRecorderControlStyleResourceLoader::imageWithResolvedName(
    const std::string& resolvedName) const {
    SRStyleImage image;
    image.name = resolvedName;
    image.path = directory_ / (resolvedName + ".png");
    image.path2x = directory_ / (resolvedName + "@2x.png");
    const auto size1x = SRPNGPixelSize(image.path);
    const auto size2x = SRPNGPixelSize(image.path2x);
    if (!size1x)
        image.path.clear();
    if (!size2x)
        image.path2x.clear();
    if (size1x) {
        image.size = *size1x;
    } else if (size2x) {
        image.size = {size2x->width / 2, size2x->height / 2};
    } else {
        return std::nullopt;
    }
    return image;
}

}  // namespace lirixkro
