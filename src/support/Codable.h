#pragma once

#include <concepts>
#include <stdexcept>
#include <string>

#include "platform/PropertyList.h"

namespace quillbox {

// Raised when stored data can't be read back as the type asked for.
class DecodingError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// How a type is written to and read from a property list: specialise
// Coding<T> with
//   static platform::PropertyList encode(const T&);
//   static T decode(const platform::PropertyList&);  // throws DecodingError
template <typename T>
struct Coding;

template <typename T>
concept Codable = requires(const T& value, const platform::PropertyList& list) {
    { Coding<T>::encode(value) } -> std::convertible_to<platform::PropertyList>;
    { Coding<T>::decode(list) } -> std::convertible_to<T>;
};

// Writes a codable value as binary property-list data.
class PropertyListEncoder {
  public:
    template <Codable T>
    platform::PropertyList::Data encode(const T& value) const {
        return encodeList(Coding<T>::encode(value));
    }

  private:
    static platform::PropertyList::Data encodeList(const platform::PropertyList& list);
};

// Reads a codable value from property-list data; throws DecodingError.
class PropertyListDecoder {
  public:
    template <Codable T>
    T decode(const platform::PropertyList::Data& data) const {
        return Coding<T>::decode(decodeList(data));
    }

  private:
    static platform::PropertyList decodeList(const platform::PropertyList::Data& data);
};

}  // namespace quillbox
