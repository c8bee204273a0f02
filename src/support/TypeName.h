#pragma once

#include <string>
#include <typeinfo>

namespace quillbox {

// The readable name of a type as the compiler spells it
// ("std::vector<int, std::allocator<int> >"), for error texts.
std::string demangledTypeName(const std::type_info& type);

template <typename T>
std::string typeName() {
    return demangledTypeName(typeid(T));
}

}  // namespace quillbox
