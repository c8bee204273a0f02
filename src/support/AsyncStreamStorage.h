#pragma once

#include <coroutine>
#include <deque>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "support/AsyncStreamTypes.h"
#include "support/Fatal.h"
#include "support/MutexLock.h"

namespace quillbox::detail {

// What a suspended consumer is given: an element, nothing (the end) or a
// failure.
template <typename Element, typename Failure>
struct StreamDelivery {
    std::optional<Element> element;
    std::optional<Failure> failure;
};

// The state a stream's producers and its one consumer share, all of it behind
// one lock. Consumers are resumed, and finish handlers run, with the lock
// released, on the thread that caused it.
template <typename Element, typename Failure>
class StreamStorage {
  public:
    using BufferingPolicy = StreamBufferingPolicy;
    using Termination = StreamTermination<Failure>;
    using YieldResult = StreamYieldResult<Element>;
    using Delivery = StreamDelivery<Element, Failure>;
    using FinishHandler = std::function<void(const Termination&)>;

    StreamStorage(BufferingPolicy limit, Failure cancellationError)
        : errorOnCancellation(std::move(cancellationError)) {
        state_.limit = limit;
    }
    StreamStorage(const StreamStorage&) = delete;
    StreamStorage& operator=(const StreamStorage&) = delete;

    // Raises CancellationError when the stream has ended.
    YieldResult yield(Element element) {
        lock_.lock();
        if (state_.terminal) {
            lock_.unlock();
            throw CancellationError();
        }
        const auto count = state_.pending.size();
        const auto& limit = state_.limit.limit;
        const bool full = limit && count >= *limit;
        if (!state_.continuation) {
            if (full) {
                lock_.unlock();
                return YieldResult::dropped(std::move(element));
            }
            state_.pending.push_back(std::move(element));
            lock_.unlock();
            return YieldResult::enqueued(limit ? *limit - (count + 1) : unboundedRemaining);
        }
        auto consumer = *std::exchange(state_.continuation, std::nullopt);
        if (count == 0) {
            lock_.unlock();
            consumer.deliver->element.emplace(std::move(element));
            consumer.handle.resume();
            return YieldResult::enqueued(limit ? *limit : unboundedRemaining);
        }
        auto result = full ? YieldResult::dropped(std::move(element))
                           : YieldResult::enqueued(limit ? *limit - count - 1 : unboundedRemaining);
        if (!full)
            state_.pending.push_back(std::move(element));
        consumer.deliver->element.emplace(takeFirst());
        lock_.unlock();
        consumer.handle.resume();
        return result;
    }

    // Ends the stream; the first end is kept, later ones change nothing.
    void finish(std::optional<Failure> error, bool cancelling = false) {
        lock_.lock();
        if (!state_.terminal) {
            state_.terminal = error ? Terminal{std::move(error)} : Terminal{};
            state_.termination = cancelling ? Termination::cancelled()
                                            : Termination::finished(state_.terminal->failure);
        }
        auto handlers = std::exchange(state_.onFinish, {});
        const auto termination = *state_.termination;
        auto consumer = std::exchange(state_.continuation, std::nullopt);
        if (consumer) {
            if (!state_.pending.empty())
                consumer->deliver->element.emplace(takeFirst());
            else
                deliverEnd(*consumer->deliver);
        }
        lock_.unlock();
        for (auto& handler : handlers)
            handler(termination);
        if (consumer)
            consumer->handle.resume();
    }

    void cancel(std::optional<Failure> error) { finish(std::move(error), true); }

    // A handler added after the end runs at once.
    void onFinish(FinishHandler handler) {
        lock_.lock();
        if (!state_.termination) {
            state_.onFinish.push_back(std::move(handler));
            lock_.unlock();
            return;
        }
        const auto termination = *state_.termination;
        lock_.unlock();
        handler(termination);
    }

    // Fills the delivery at once and answers false, or keeps the consumer to
    // resume later and answers true. A second waiting consumer is a fault.
    bool awaitNext(std::coroutine_handle<> consumer, Delivery& delivery) {
        lock_.lock();
        if (state_.continuation) {
            lock_.unlock();
            fatalError("attempt to await next() on more than one task");
        }
        if (!state_.pending.empty()) {
            delivery.element.emplace(takeFirst());
        } else if (!state_.terminal) {
            state_.continuation = Consumer{consumer, &delivery};
            lock_.unlock();
            return true;
        } else {
            deliverEnd(delivery);
        }
        lock_.unlock();
        return false;
    }

    const Failure errorOnCancellation;

  private:
    struct Consumer {
        std::coroutine_handle<> handle;
        Delivery* deliver;
    };
    // No failure means a plain finish.
    struct Terminal {
        std::optional<Failure> failure;
    };
    struct State {
        std::optional<Consumer> continuation;
        std::deque<Element> pending;
        BufferingPolicy limit;
        std::vector<FinishHandler> onFinish;
        std::optional<Terminal> terminal;
        // How the stream ended, for handlers added afterwards.
        std::optional<Termination> termination;
    };

    Element takeFirst() {
        auto first = std::move(state_.pending.front());
        state_.pending.pop_front();
        return first;
    }

    // A failure is delivered once: the end becomes a plain finish after it.
    void deliverEnd(Delivery& delivery) {
        delivery.failure = std::exchange(state_.terminal->failure, std::nullopt);
    }

    MutexLock lock_;
    State state_;
};

}  // namespace quillbox::detail
