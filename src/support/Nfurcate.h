#pragma once

#include <functional>
#include <map>
#include <ranges>
#include <type_traits>
#include <vector>

namespace quillbox {

// Splits a collection by key: each element is appended, in collection
// order, to the array under the key the closure gives it. Only keys that
// occur are present. An exception from the key closure ends the split and
// passes on.
template <std::ranges::input_range Collection, typename KeyFunction>
auto nfurcate(Collection&& collection, KeyFunction&& keyOf) {
    using Element = std::ranges::range_value_t<Collection>;
    using KeyType = std::remove_cvref_t<std::invoke_result_t<KeyFunction&, const Element&>>;
    std::map<KeyType, std::vector<Element>> parts;
    for (auto&& element : collection) {
        parts[std::invoke(keyOf, std::as_const(element))].push_back(element);
    }
    return parts;
}

}  // namespace quillbox
