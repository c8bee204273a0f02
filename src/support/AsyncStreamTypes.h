#pragma once

#include <cstddef>
#include <exception>
#include <limits>
#include <optional>
#include <type_traits>

#include "support/CancellationError.h"

namespace quillbox::detail {

// How many elements a stream keeps for its consumer: up to a limit (the
// newest element is dropped when it is reached), or without bound.
struct StreamBufferingPolicy {
    static StreamBufferingPolicy limited(std::size_t limit) { return {limit}; }
    static StreamBufferingPolicy unbounded() { return {std::nullopt}; }

    std::optional<std::size_t> limit;
};

// "remaining" of an unbounded stream.
inline constexpr std::size_t unboundedRemaining = std::numeric_limits<std::size_t>::max();

// Why a stream ended, as its finish handlers are told.
template <typename Failure>
struct StreamTermination {
    enum class Kind { finished, cancelled };

    static StreamTermination finished(std::optional<Failure> error = std::nullopt) {
        return {Kind::finished, std::move(error)};
    }
    static StreamTermination cancelled() { return {Kind::cancelled, std::nullopt}; }

    bool isCancelled() const { return kind == Kind::cancelled; }

    // The error the stream finished with, a CancellationError for a
    // cancellation, nothing for a plain finish.
    std::exception_ptr finishedOrCancelledError() const {
        if (kind == Kind::cancelled)
            return std::make_exception_ptr(CancellationError());
        if (!error)
            return nullptr;
        if constexpr (std::is_same_v<Failure, std::exception_ptr>)
            return *error;
        else
            return std::make_exception_ptr(*error);
    }

    Kind kind;
    std::optional<Failure> error;
};

// What became of a yielded element.
template <typename Element>
struct StreamYieldResult {
    enum class Kind { enqueued, dropped, terminated };

    static StreamYieldResult enqueued(std::size_t remaining) {
        return {Kind::enqueued, remaining, std::nullopt};
    }
    static StreamYieldResult dropped(Element element) {
        return {Kind::dropped, 0, std::move(element)};
    }
    static StreamYieldResult terminated() { return {Kind::terminated, 0, std::nullopt}; }

    Kind kind;
    // For enqueued: how many more elements fit in the buffer.
    std::size_t remaining;
    // For dropped: the element that didn't fit.
    std::optional<Element> droppedElement;
};

}  // namespace quillbox::detail
