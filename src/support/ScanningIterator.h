#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <iterator>
#include <optional>
#include <ranges>
#include <type_traits>
#include <vector>

namespace quillbox {

// A cursor over a collection for hand-written parsers: look at the next or
// previous element, take it, or take a run up to a condition. Reading past
// either end answers nothing rather than failing.
template <std::ranges::random_access_range Collection>
class ScanningIterator {
  public:
    using Element = std::ranges::range_value_t<Collection>;
    using ConstIterator = decltype(std::ranges::cbegin(std::declval<const Collection&>()));
    // A run is of the collection's own type where it can be made from a
    // pair of positions (texts, vectors), else a vector of the elements.
    using Run =
        std::conditional_t<std::constructible_from<Collection, ConstIterator, ConstIterator>,
                           Collection, std::vector<Element>>;

    explicit ScanningIterator(Collection sequence) : sequence_(std::move(sequence)) {}

    const Collection& sequence() const { return sequence_; }
    std::size_t index() const { return index_; }
    bool isAtEnd() const { return index_ >= size(); }

    std::optional<Element> peek() const {
        if (isAtEnd())
            return std::nullopt;
        return at(index_);
    }
    std::optional<Element> scan() {
        auto element = peek();
        if (element)
            ++index_;
        return element;
    }
    std::optional<Element> peekPrevious() const {
        if (index_ == 0 || index_ > size())
            return std::nullopt;
        return at(index_ - 1);
    }
    std::optional<Element> scanPrevious() {
        auto element = peekPrevious();
        if (element)
            --index_;
        return element;
    }

    // The elements from here up to the first one that meets the condition,
    // which is where the cursor then stands; all the rest when none does.
    template <std::predicate<const Element&> Condition>
    Run scanUpTo(Condition&& condition) {
        const auto start = std::min(index_, size());
        auto end = start;
        while (end < size() && !condition(at(end)))
            ++end;
        index_ = end;
        const auto first = std::ranges::cbegin(sequence_);
        return Run(first + static_cast<std::ptrdiff_t>(start),
                   first + static_cast<std::ptrdiff_t>(end));
    }
    Run scanUpTo(const Element& upTo) requires std::equality_comparable<Element> {
        return scanUpTo([&upTo](const Element& element) { return element == upTo; });
    }

  private:
    std::size_t size() const { return static_cast<std::size_t>(std::ranges::size(sequence_)); }
    Element at(std::size_t position) const {
        return *(std::ranges::cbegin(sequence_) + static_cast<std::ptrdiff_t>(position));
    }

    Collection sequence_;
    std::size_t index_ = 0;
};

}  // namespace quillbox
