#include "support/Codable.h"

#include "platform/PropertyListCodec.h"

namespace quillbox {

platform::PropertyList::Data PropertyListEncoder::encodeList(const platform::PropertyList& list) {
    return platform::PropertyListCodec::encodeBinary(list);
}

platform::PropertyList PropertyListDecoder::decodeList(const platform::PropertyList::Data& data) {
    auto list = platform::PropertyListCodec::decode(data);
    if (!list)
        throw DecodingError("The data couldn't be read because it isn't in the correct format.");
    return *list;
}

}  // namespace quillbox
