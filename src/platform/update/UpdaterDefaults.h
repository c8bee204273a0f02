#pragma once

#include <string>

#include "platform/PropertyList.h"
#include "support/DefaultsKey.h"

// The updater's own preferences, beside the program's in the same store.
// The program reads none of them; the user's preference file may set the
// feed's address to override the one the program was built with.
namespace platform::update::defaults {

inline const quillbox::Key<std::string> feedURL("SUFeedURL");
// Absent until the user answered the question on the second launch.
inline const quillbox::Key<bool> automaticallyChecks("SUEnableAutomaticChecks");
inline const quillbox::Key<PropertyList::Date> lastCheckTime("SULastCheckTime");
inline const quillbox::Key<std::string> skippedVersion("SUSkippedVersion");
inline const quillbox::KeyWithDefault<bool> hasLaunchedBefore("SUHasLaunchedBefore", false);

}  // namespace platform::update::defaults
