#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/PropertyListCodec.h"
#include "platform/sim/SimMainLoop.h"
#include "platform/xdg/PlistFileStore.h"
#include "xdg/DesktopEntryTestTree.h"

namespace platform::xdg::fixtures {

// A store's file in a folder of its own, not yet made, in a temporary tree.
class PlistFileStoreTest : public ::testing::Test {
  protected:
    // Puts a whole new file in place the way other programs save: write
    // beside, rename over.
    void replaceFromOutside(const platform::PropertyList::Dictionary& values) {
        const auto bytes = platform::PropertyListCodec::encodeBinary(values);
        const std::filesystem::path beside = path.string() + ".new";
        tree.write(beside, std::string(bytes.begin(), bytes.end()));
        std::filesystem::rename(beside, path);
    }
    std::vector<std::filesystem::path> damagedFiles() const {
        std::vector<std::filesystem::path> found;
        for (const auto& entry : std::filesystem::directory_iterator(path.parent_path())) {
            if (entry.path().filename().string().find(".damaged-") != std::string::npos)
                found.push_back(entry.path());
        }
        return found;
    }

    DesktopEntryTestTree tree;
    std::filesystem::path path = tree.root() / "tarnwick" / "org.example.Tarnwick.plist";
    platform::sim::SimMainLoop loop;
};

}  // namespace platform::xdg::fixtures
