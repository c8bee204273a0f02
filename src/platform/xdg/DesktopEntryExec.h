#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::xdg {

// The command line of an entry's Exec value (already unescaped): arguments
// separated by spaces, double-quoted arguments with \" \` \$ \\ inside, and
// the field codes (%f, %U, %i, ...) that a launcher would expand removed,
// "%%" becoming "%". Empty when the quoting is unbalanced.
std::vector<std::string> desktopEntryCommandLine(std::string_view exec);

// The Exec value (before the key file's own escapes) that runs the command
// line as it stands: an argument with a reserved character is double-quoted,
// and a '%' is doubled so that no launcher takes it for a field code.
std::string desktopEntryExec(const std::vector<std::string>& commandLine);

// The file name of the program an Exec value starts, looking through an
// "env NAME=value ..." prefix: "pcmanfm" for "/usr/bin/pcmanfm %U".
std::optional<std::string> desktopEntryProgramName(std::string_view exec);

}  // namespace platform::xdg
