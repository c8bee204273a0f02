#pragma once

#include <optional>
#include <string>

#include "platform/Bundle.h"
#include "platform/Image.h"

namespace tarnwick {

// One application bundle in a row: its icon, when it has one, then its
// name.
struct LocalAppView {
    std::optional<platform::Image> icon;
    std::string appName;

    // The name is the bundle's translated name, else its name, else its
    // identifier, else its file name without the extension. The icon is the
    // one the workspace shows for the bundle's file.
    static LocalAppView fromBundle(const platform::Bundle& bundle);
};

}  // namespace tarnwick
