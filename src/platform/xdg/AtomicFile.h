#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace platform::xdg {

// Replaces the file's content so that a reader sees the old file or the new
// one, never a part: the bytes go to a temporary file in the same folder,
// which gets the mode, is synced and renamed over the file; the folder is
// synced after. The folder must exist. Empty on success, else the system's
// text of what failed; on success, written (when given) describes the new
// file.
std::string writeFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                                mode_t mode, struct stat* written = nullptr);

}  // namespace platform::xdg
