#pragma once

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

#include "support/AsyncStreamStorage.h"
#include "support/CancellationError.h"
#include "support/Result.h"
#include "support/Task.h"

namespace quillbox {

namespace detail {

template <typename Failure>
Failure defaultErrorOnCancellation() {
    if constexpr (std::is_same_v<Failure, std::exception_ptr>)
        return std::make_exception_ptr(CancellationError());
    else
        return Failure();
}

}  // namespace detail

// A single-consumer asynchronous sequence that is driven from outside
// through its Continuation, and that the consumer side can cancel, with an
// error of the stream's Failure type if it likes.
//
// Consuming it takes a coroutine (a Task, say):
//
//     auto elements = stream.makeAsyncIterator();
//     while (auto element = co_await elements.next()) use(*element);
//
// next() gives the elements in order, then nothing once the stream has
// ended and its buffer is drained; a failure the stream ended with is raised
// (see raise()) once, and later calls give nothing. Only one coroutine may
// wait in next() at a time; a second one stops the process.
//
// Cancellation reaches the stream three ways: cancel() and cancelThrowing()
// on the stream; the cancellation of the Task that is waiting in next(),
// which cancels the stream with errorOnCancellation; and the end of the
// consumer side, when the stream and all its iterators are gone. Producers
// then see CancellationError from yield, and finish handlers are told
// `cancelled`.
//
// Any thread may yield. The consumer is resumed on the thread that yields
// (or finishes, or cancels), after the stream's lock is released.
//
// A stream of no value uses std::monostate as its Element.
template <typename Element, typename Failure = std::exception_ptr>
class AsyncCancellableThrowingStream {
    using Storage = detail::StreamStorage<Element, Failure>;

    // The consumer's side: when the last stream value and iterator holding it
    // go, the stream ends.
    class Context {
      public:
        explicit Context(std::shared_ptr<Storage> shared) : storage(std::move(shared)) {}
        ~Context() { storage->cancel(storage->errorOnCancellation); }
        Context(const Context&) = delete;
        Context& operator=(const Context&) = delete;

        const std::shared_ptr<Storage> storage;
    };

  public:
    class Continuation {
      public:
        using BufferingPolicy = detail::StreamBufferingPolicy;
        using Termination = detail::StreamTermination<Failure>;
        using YieldResult = detail::StreamYieldResult<Element>;

        // Raises CancellationError once the stream has ended.
        YieldResult yield(Element element) const { return storage_->yield(std::move(element)); }
        YieldResult yield() const requires std::is_same_v<Element, std::monostate> {
            return yield(std::monostate());
        }
        // A success is yielded; a failure finishes the stream with it.
        YieldResult yieldWith(Result<Element, Failure> result) const {
            if (result.isSuccess())
                return yield(result.value());
            finish(result.error());
            return YieldResult::terminated();
        }
        // Ends the stream, with an error if given. Elements already yielded
        // stay readable. Only the first end counts.
        void finish(std::optional<Failure> error = std::nullopt) const {
            storage_->finish(std::move(error));
        }
        void onFinish(std::function<void(const Termination&)> handler) const {
            storage_->onFinish(std::move(handler));
        }

      private:
        friend class AsyncCancellableThrowingStream;
        explicit Continuation(std::shared_ptr<Storage> storage) : storage_(std::move(storage)) {}
        std::shared_ptr<Storage> storage_;
    };

    using BufferingPolicy = typename Continuation::BufferingPolicy;
    using Termination = typename Continuation::Termination;
    using YieldResult = typename Continuation::YieldResult;

    class Iterator {
      public:
        // Awaitable: gives the next element, nothing at the end, or raises
        // the stream's failure.
        class NextAwaiter {
          public:
            bool await_ready() const noexcept { return false; }
            template <typename Promise>
            bool await_suspend(std::coroutine_handle<Promise> consumer) {
                if constexpr (CancellablePromise<Promise>) {
                    taskCancellation_ = consumer.promise().cancellation()->onCancel(
                        [storage = storage_] { storage->cancel(storage->errorOnCancellation); });
                }
                return storage_->awaitNext(consumer, delivery_);
            }
            std::optional<Element> await_resume() {
                taskCancellation_.cancel();
                if (delivery_.failure)
                    raise(*delivery_.failure);
                return std::move(delivery_.element);
            }

          private:
            friend class Iterator;
            explicit NextAwaiter(std::shared_ptr<Storage> storage) : storage_(std::move(storage)) {}

            std::shared_ptr<Storage> storage_;
            detail::StreamDelivery<Element, Failure> delivery_;
            platform::Subscription taskCancellation_;
        };

        NextAwaiter next() { return NextAwaiter(context_->storage); }

      private:
        friend class AsyncCancellableThrowingStream;
        explicit Iterator(std::shared_ptr<Context> context) : context_(std::move(context)) {}
        std::shared_ptr<Context> context_;
    };

    // Gives the building closure the stream's continuation, at once.
    AsyncCancellableThrowingStream(BufferingPolicy bufferingPolicy, Failure errorOnCancellation,
                                   const std::function<void(Continuation)>& build)
        : context_(std::make_shared<Context>(
              std::make_shared<Storage>(bufferingPolicy, std::move(errorOnCancellation)))) {
        build(Continuation(context_->storage));
    }
    explicit AsyncCancellableThrowingStream(const std::function<void(Continuation)>& build)
        : AsyncCancellableThrowingStream(BufferingPolicy::unbounded(),
                                         detail::defaultErrorOnCancellation<Failure>(), build) {}

    // The stream and its continuation as a pair.
    static std::pair<AsyncCancellableThrowingStream, Continuation> makeStream(
        BufferingPolicy bufferingPolicy = BufferingPolicy::unbounded(),
        Failure errorOnCancellation = detail::defaultErrorOnCancellation<Failure>()) {
        std::optional<Continuation> continuation;
        AsyncCancellableThrowingStream stream(bufferingPolicy, std::move(errorOnCancellation),
                                              [&](Continuation given) { continuation = given; });
        return {std::move(stream), std::move(*continuation)};
    }

    const Failure& errorOnCancellation() const { return context_->storage->errorOnCancellation; }

    // Ends the stream as cancelled, raising errorOnCancellation to the
    // consumer once its buffer is drained.
    void cancel() const { cancelThrowing(errorOnCancellation()); }
    // The same with the given error, or a plain end with none.
    void cancelThrowing(std::optional<Failure> error) const {
        context_->storage->cancel(std::move(error));
    }

    void onFinish(std::function<void(const Termination&)> handler) const {
        context_->storage->onFinish(std::move(handler));
    }

    Iterator makeAsyncIterator() const { return Iterator(context_); }

  private:
    std::shared_ptr<Context> context_;
};

}  // namespace quillbox
