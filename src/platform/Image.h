#pragma once

#include <filesystem>
#include <string>

namespace platform {

// An image as the program names it; the toolkit turns it into pixels.
struct Image {
    enum class Kind {
        resource,      // an image of the program's own resources ("StatusBarIcon")
        systemSymbol,  // a system symbol ("circle.fill")
        file,          // an image file, such as an application's icon
    };
    Kind kind = Kind::resource;
    std::string name;            // resource or symbol name
    std::filesystem::path path;  // for files

    static Image resource(std::string name) { return {Kind::resource, std::move(name), {}}; }
    static Image systemSymbol(std::string name) {
        return {Kind::systemSymbol, std::move(name), {}};
    }
    static Image file(std::filesystem::path path) { return {Kind::file, {}, std::move(path)}; }

    friend bool operator==(const Image&, const Image&) = default;
};

}  // namespace platform
