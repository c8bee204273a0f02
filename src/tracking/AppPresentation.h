#pragma once

#include <filesystem>
#include <string>

#include "platform/Image.h"
#include "platform/Workspace.h"

namespace tarnwick {

// How a running application is sorted and shown. The two names fall back
// differently on purpose: sorting prefers the bundle's folder name to its
// identifier, so unnamed applications sort among the named ones, while the
// menu prefers the identifier, which tells the user more.

// Its name, else its bundle's folder name, else its bundle identifier, else
// its description.
std::string sortName(const platform::RunningApplication& application);

// Its name, else its bundle identifier, else its bundle's folder name, else
// "Unknown".
std::string displayName(const platform::RunningApplication& application);

// Its own icon, else the system symbol "circle". The symbol exists on every
// platform we draw on, so the program's own resources are never needed here.
platform::Image displayIcon(const platform::RunningApplication& application);

// The last component of a location, ignoring a trailing separator, as a URL
// names it ("/Applications/Notes.app/" gives "Notes.app").
std::string lastPathComponent(const std::filesystem::path& path);

}  // namespace tarnwick
