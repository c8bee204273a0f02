#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/Bundle.h"

namespace platform::sim {

class SimBundle final : public Bundle {
  public:
    SimBundle(std::filesystem::path path, std::optional<std::string> identifier,
              std::optional<PropertyList::Dictionary> info);

    std::optional<std::string> bundleIdentifier() const override { return identifier_; }
    std::filesystem::path bundlePath() const override { return path_; }
    const PropertyList::Dictionary* infoDictionary() const override {
        return info_ ? &*info_ : nullptr;
    }

  private:
    std::filesystem::path path_;
    std::optional<std::string> identifier_;
    std::optional<PropertyList::Dictionary> info_;
};

// The program's own bundle and the bundles tests place at paths.
class SimBundles final : public Bundles {
  public:
    static constexpr const char* mainBundleIdentifier = "harrowmere.Tarnwick";
    static constexpr const char* mainBundlePath = "/Applications/Tarnwick.app";

    // The version and build the main bundle's information reports.
    explicit SimBundles(std::string version = "0.1.0", std::string build = "1");

    std::shared_ptr<Bundle> mainBundle() override { return main_; }
    std::shared_ptr<Bundle> bundleWithPath(const std::filesystem::path& path) override;

    std::shared_ptr<SimBundle> addBundle(const std::filesystem::path& path,
                                         std::optional<std::string> identifier,
                                         std::optional<PropertyList::Dictionary> info = {});
    // Makes a main bundle that reports this version and build.
    void setVersion(std::string version, std::string build);
    // Replaces the main bundle, as for a bundle that lacks an identifier.
    void setMainBundle(std::shared_ptr<SimBundle> bundle) { main_ = std::move(bundle); }

  private:
    std::shared_ptr<SimBundle> main_;
    std::map<std::filesystem::path, std::shared_ptr<SimBundle>> bundles_;
};

}  // namespace platform::sim
