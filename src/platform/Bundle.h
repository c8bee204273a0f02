#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/PropertyList.h"

namespace platform {

// An application bundle: its identity and information dictionary.
class Bundle {
  public:
    virtual ~Bundle() = default;
    virtual std::optional<std::string> bundleIdentifier() const = 0;
    virtual std::filesystem::path bundlePath() const = 0;
    // Null where the bundle has no information dictionary.
    virtual const PropertyList::Dictionary* infoDictionary() const = 0;
    // The entries translated for the user's language; null where there are
    // none.
    virtual const PropertyList::Dictionary* localizedInfoDictionary() const { return nullptr; }
    // Where a helper executable shipped with the bundle lies, whether or not
    // it is there: by default beside the main executable in the bundle.
    virtual std::filesystem::path pathForAuxiliaryExecutable(const std::string& name) const {
        return bundlePath() / "Contents" / "MacOS" / name;
    }
};

class Bundles {
  public:
    virtual ~Bundles() = default;
    // This program's own bundle.
    virtual std::shared_ptr<Bundle> mainBundle() = 0;
    // The bundle at a location; null when there is none to open there.
    virtual std::shared_ptr<Bundle> bundleWithPath(const std::filesystem::path& path) = 0;
};

}  // namespace platform
