#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/ObjectModel.h"

namespace platform::sqlite {

// The model file: a text file (extension ".datamodel") that declares the
// entities, their attributes and the named configurations. One declaration a
// line; blank lines and lines starting with "#" are ignored:
//
//     entity Book
//         title: string
//         pages: integer = 0
//         rating: decimal?
//         cover: data?
//         finished: boolean = false
//     entity Author
//         name: string
//     configuration Shelf: Book Author
//
// An attribute line belongs to the entity above it. Its type is one of
// string, integer, decimal, boolean and data; a "?" after the type makes it
// optional; "= value" gives new objects a default (a number, true or false,
// or a text in double quotes). Names are letters, digits and "_", starting
// with a letter; "Z_" starts names the store keeps for itself.
extern const std::string_view modelFileExtension;

// Throws ObjectStoreError (modelUnreadable) naming the line at fault.
ObjectModel parseModel(std::string_view text);
// Throws modelUnreadable when the file can't be read, too.
ObjectModel readModelFile(const std::filesystem::path& path);

}  // namespace platform::sqlite
