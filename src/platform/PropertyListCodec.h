#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/PropertyList.h"

namespace platform {

// Reading and writing property lists in the platform's binary and XML forms.
class PropertyListCodec {
  public:
    static PropertyList::Data encodeBinary(const PropertyList& value);
    static std::string encodeXML(const PropertyList& value);

    // Reads either form; nothing when the bytes are not a property list.
    static std::optional<PropertyList> decode(std::string_view bytes);
    static std::optional<PropertyList> decode(const PropertyList::Data& bytes);
};

}  // namespace platform
