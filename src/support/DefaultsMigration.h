#pragma once

#include <cstdint>
#include <functional>
#include <utility>

namespace quillbox {

// A one-time change to the stored preferences, run once for a user when its
// version is above the stored preferences version.
struct Migration {
    Migration(std::uint32_t version, std::function<void()> migrate)
        : migrationVersion(version), onMigrate(std::move(migrate)) {}

    std::uint32_t migrationVersion;
    std::function<void()> onMigrate;
};

}  // namespace quillbox
