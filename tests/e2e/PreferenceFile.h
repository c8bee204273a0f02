#pragma once

#include <filesystem>
#include <string>

#include "platform/PropertyList.h"

namespace e2e {

// The top-level dictionary of a preference file; empty when the file is
// missing or is no property list.
platform::PropertyList::Dictionary readPreferenceFile(const std::string& path);

// Writes the dictionary as a binary property list, making the folders on
// the way.
void writePreferenceFile(const std::string& path,
                         const platform::PropertyList::Dictionary& preferences);

// The strings of an array under the key; empty when there is none.
std::vector<std::string> stringsUnder(const platform::PropertyList::Dictionary& preferences,
                                      const std::string& key);

// The bytes of a file; empty when it can't be read.
std::string contentsOf(const std::filesystem::path& file);

}  // namespace e2e
