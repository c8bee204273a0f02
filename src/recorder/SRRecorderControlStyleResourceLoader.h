#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>
#include <vector>

#include "platform/Geometry.h"
#include "recorder/SRRecorderControlStyleComponents.h"
#include "recorder/SRStyleInfo.h"

namespace lirixkro {

// An image of a style, found among the resources: its resolved name, its
// files at 1x and 2x (either may be missing, not both) and its size in
// points.
struct SRStyleImage {
    std::string name;
    std::filesystem::path path;
    std::filesystem::path path2x;
    platform::CGSize size;
    friend bool operator==(const SRStyleImage&, const SRStyleImage&) = default;
};

// Finds a style's description and images among the library's resources,
// fitting the look best, and keeps what it found. The files: the
// description "<identifier>-info.json", the images "<prefix>-<name>.png"
// and "<prefix>-<name>@2x.png". Every fault raises
// SRInternalInconsistencyException: a broken style fails at once and loudly.
class SRRecorderControlStyleResourceLoader {
  public:
    // The name of the caches, as the platform's caches are named.
    static constexpr const char* cacheName = "SRRecorderControlStyleResourceLoader";

    // The one loader of the process, on the library's resource folder as it
    // is at first use.
    static SRRecorderControlStyleResourceLoader& shared();
    explicit SRRecorderControlStyleResourceLoader(std::filesystem::path resourceDirectory);

    // Raises "Missing <identifier>-info" when there is no description.
    std::shared_ptr<const SRStyleInfo> infoForStyle(const std::string& identifier);
    // The identifier followed by each supported look's text, the best match
    // for the components first; equally good looks keep their order.
    std::vector<std::string> lookupPrefixesForStyle(
        const std::string& identifier, const SRRecorderControlStyleComponents& components);
    // The image of the first prefix that has it; raises "Missing image named
    // <name>" when none has.
    SRStyleImage imageNamed(const std::string& name, const std::string& identifier,
                            const SRRecorderControlStyleComponents& components);

  private:
    using PrefixKey = std::pair<std::string, std::size_t>;
    std::optional<SRStyleImage> imageWithResolvedName(const std::string& resolvedName) const;

    std::filesystem::path directory_;
    std::mutex lock_;
    std::map<std::string, std::shared_ptr<const SRStyleInfo>> infoCache_;
    std::map<std::pair<std::string, std::vector<std::uint32_t>>, std::vector<std::string>>
        lookupPrefixesCache_;
    std::map<std::tuple<std::string, std::vector<std::uint32_t>, std::string>, SRStyleImage>
        imageCache_;
};

// The size in pixels of a PNG file, read from its header; nothing for a
// file that isn't one.
std::optional<platform::CGSize> SRPNGPixelSize(const std::filesystem::path& path);

}  // namespace lirixkro
