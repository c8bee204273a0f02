#pragma once

#include <vector>

#include "platform/ObjectStore.h"

namespace platform::sqlite {

// Orders attribute values as the store's queries do: no value first, then
// numbers (booleans as 0 and 1), texts byte by byte, then data.
int compareValues(const AttributeValue& left, const AttributeValue& right);

bool satisfies(const AttributeValue& value, const Comparison& condition);

}  // namespace platform::sqlite
