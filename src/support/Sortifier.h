#pragma once

#include <concepts>
#include <functional>
#include <string>

#include "support/Codable.h"

namespace quillbox {

// A type whose values settle the order of two Sortifiers of equal rank:
// a.tiebreaksBefore(b) is true when a comes first.
template <typename T>
concept SortifierTiebreaker = requires(const T& a, const T& b) {
    { a.tiebreaksBefore(b) } -> std::convertible_to<bool>;
};

// A value with a stored rank to sort by, such as a position the user chose
// by dragging. The rank decides the order; values of equal rank are put in
// order by their own tiebreaker.
template <typename Wrapped>
class Sortifier {
  public:
    // Where the rank comes from when stored data has none (data written
    // before ranks were kept): derived from the value, or one rank for all.
    class DecodingConfiguration {
      public:
        explicit DecodingConfiguration(std::function<double(const Wrapped&)> deriveSortingValueFrom)
            : derive_(std::move(deriveSortingValueFrom)) {}
        static DecodingConfiguration defaultSortingValue(double value) {
            return DecodingConfiguration([value](const Wrapped&) { return value; });
        }
        double sortingValue(const Wrapped& wrapped) const { return derive_(wrapped); }

      private:
        std::function<double(const Wrapped&)> derive_;
    };

    Sortifier(Wrapped wrapped, double sortingValue)
        : sortingValue_(sortingValue), wrapped_(std::move(wrapped)) {}

    double sortingValue() const { return sortingValue_; }
    const Wrapped& wrapped() const { return wrapped_; }
    // Member access goes through to the wrapped value.
    const Wrapped* operator->() const { return &wrapped_; }
    const Wrapped& operator*() const { return wrapped_; }

    friend bool operator<(const Sortifier& a,
                          const Sortifier& b) requires SortifierTiebreaker<Wrapped> {
        if (a.sortingValue_ != b.sortingValue_)
            return a.sortingValue_ < b.sortingValue_;
        return a.wrapped_.tiebreaksBefore(b.wrapped_);
    }
    friend bool operator==(const Sortifier& a,
                           const Sortifier& b) requires std::equality_comparable<Wrapped> {
        return a.sortingValue_ == b.sortingValue_ && a.wrapped_ == b.wrapped_;
    }
    // Against a bare value only the value counts, whatever the rank.
    friend bool operator==(const Sortifier& a,
                           const Wrapped& b) requires std::equality_comparable<Wrapped> {
        return a.wrapped_ == b;
    }

    // Reads a dictionary of "wrapped" and, when present, "sortingValue";
    // without one, the configuration gives the rank. Throws DecodingError.
    static Sortifier decode(const platform::PropertyList& list,
                            const DecodingConfiguration& configuration) requires Codable<Wrapped> {
        const auto& dictionary = dictionaryOf(list);
        auto wrapped = Coding<Wrapped>::decode(entry(dictionary, "wrapped"));
        if (!dictionary.contains("sortingValue")) {
            const double rank = configuration.sortingValue(wrapped);
            return Sortifier(std::move(wrapped), rank);
        }
        return Sortifier(std::move(wrapped), rankOf(dictionary));
    }
    // The same, with the rank required.
    static Sortifier decode(const platform::PropertyList& list) requires Codable<Wrapped> {
        const auto& dictionary = dictionaryOf(list);
        return Sortifier(Coding<Wrapped>::decode(entry(dictionary, "wrapped")), rankOf(dictionary));
    }
    platform::PropertyList encode() const requires Codable<Wrapped> {
        return platform::PropertyList::Dictionary{{"sortingValue", sortingValue_},
                                                  {"wrapped", Coding<Wrapped>::encode(wrapped_)}};
    }

  private:
    using Dictionary = platform::PropertyList::Dictionary;

    static const Dictionary& dictionaryOf(const platform::PropertyList& list) {
        const auto* dictionary = list.dictionary();
        if (!dictionary)
            throw DecodingError("A sorted value is stored as a dictionary.");
        return *dictionary;
    }
    static const platform::PropertyList& entry(const Dictionary& dictionary,
                                               const std::string& key) {
        const auto found = dictionary.find(key);
        if (found == dictionary.end())
            throw DecodingError("The sorted value has no \"" + key + "\" entry.");
        return found->second;
    }
    static double rankOf(const Dictionary& dictionary) {
        const auto rank = entry(dictionary, "sortingValue").number();
        if (!rank)
            throw DecodingError("The sorted value's \"sortingValue\" is not a number.");
        return *rank;
    }

    double sortingValue_;
    Wrapped wrapped_;
};

}  // namespace quillbox

template <quillbox::Codable Wrapped>
struct quillbox::Coding<quillbox::Sortifier<Wrapped>> {
    static platform::PropertyList encode(const quillbox::Sortifier<Wrapped>& value) {
        return value.encode();
    }
    static quillbox::Sortifier<Wrapped> decode(const platform::PropertyList& list) {
        return quillbox::Sortifier<Wrapped>::decode(list);
    }
};
