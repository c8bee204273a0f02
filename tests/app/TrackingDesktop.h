#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "platform/sim/SimDesktop.h"
#include "settings/SettingsKeys.h"
#include "support/DefaultsManager.h"
#include "tracking/AppGrouping.h"
#include "tracking/AppPresentation.h"

namespace tarnwick::testing {

using platform::PropertyList;
using platform::sim::SimAXCall;
using platform::sim::SimAXFault;
using platform::sim::SimRunningApplication;
using platform::sim::SimWindowSetup;
using AppRef = std::shared_ptr<SimRunningApplication>;

// The sample desktop: the file manager (pid 300, windows "Pictures",
// "Downloads", "Documents" front to back), TextEdit (301: "Letter.rtf",
// "Notes.txt"), Preview (302: "Photo.jpg") and Notes (303, no windows), the
// last three in /Applications with bundles, and the program itself.
class TrackingDesktop : public ::testing::Test {
  protected:
    TrackingDesktop() {
        const auto samples = desktop.populateSampleApplications();
        finder = samples[0];
        textEdit = samples[1];
        preview = samples[2];
        notes = samples[3];
        for (const auto& sample : {textEdit, preview, notes})
            addBundle(*sample->bundleURL(), *sample->bundleIdentifier());
        settle();
    }

    static SimRunningApplication::Info appInfo(pid_t pid, std::optional<std::string> name,
                                               std::optional<std::string> bundleIdentifier,
                                               std::optional<std::filesystem::path> location) {
        SimRunningApplication::Info info;
        info.processIdentifier = pid;
        info.localizedName = std::move(name);
        info.bundleIdentifier = std::move(bundleIdentifier);
        info.bundleURL = std::move(location);
        return info;
    }

    void addBundle(const std::filesystem::path& location, std::optional<std::string> identifier,
                   PropertyList::Dictionary info = {{"CFBundlePackageType", "APPL"}}) {
        desktop.bundles().addBundle(location, std::move(identifier), std::move(info));
    }

    // An ordinary application in /Applications, with its bundle, launched
    // now; the notification arrives at settle().
    AppRef launchOrdinaryApp(pid_t pid, const std::string& name) {
        const auto location = "/Applications/" + name + ".app";
        const auto identifier = "com.example." + name;
        addBundle(location, identifier);
        return desktop.workspace().launch(appInfo(pid, name, identifier, location));
    }

    void settle() { desktop.loop().runUntilIdle(); }

    static std::vector<std::string> names(const RunningApps& apps, AppGrouping grouping) {
        std::vector<std::string> result;
        for (const auto& app : appsIn(apps, grouping))
            result.push_back(displayName(*app));
        return result;
    }

    static quillbox::DefaultsManager& defaults() { return quillbox::DefaultsManager::shared(); }
    void storeFavorites(std::set<std::string> identifiers) {
        defaults().setValue(std::optional(std::move(identifiers)), favoriteApps);
    }
    void storeHidden(std::set<std::string> identifiers) {
        defaults().setValue(std::optional(std::move(identifiers)), hiddenApps);
    }

    platform::sim::SimDesktop desktop;
    platform::ScopedInstall install{desktop.services()};
    AppRef finder, textEdit, preview, notes;
};

}  // namespace tarnwick::testing
