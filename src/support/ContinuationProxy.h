#pragma once

#include <atomic>
#include <coroutine>
#include <exception>
#include <functional>
#include <optional>
#include <utility>
#include <variant>

#include "support/MutexLock.h"
#include "support/Result.h"

namespace quillbox {

// Lets a suspended caller and the code that produces its result meet in
// either order: whichever of the continuation and the result comes second
// resumes the continuation. The first result wins and a second continuation
// is ignored, so a continuation is resumed at most once. Safe from any
// thread; the continuation runs on the thread that brought the second half,
// with the proxy's lock released.
template <typename Value, typename Failure = std::exception_ptr>
class ContinuationProxy {
  public:
    using ResultType = Result<Value, Failure>;
    // The suspended caller, given the outcome once.
    using Continuation = std::function<void(ResultType)>;

    ContinuationProxy() = default;
    ContinuationProxy(const ContinuationProxy&) = delete;
    ContinuationProxy& operator=(const ContinuationProxy&) = delete;

    void setContinuation(Continuation continuation) {
        auto ready = lock_.withLock([&]() -> std::optional<ResultType> {
            if (auto* awaiting = std::get_if<AwaitingContinuation>(&state_)) {
                auto result = std::move(awaiting->result);
                state_ = Completed();
                return result;
            }
            if (std::holds_alternative<AwaitingInput>(state_))
                state_ = AwaitingResult{std::move(continuation)};
            return std::nullopt;
        });
        if (ready)
            continuation(std::move(*ready));
    }

    void resumeWith(ResultType result) {
        auto waiting = lock_.withLock([&]() -> Continuation {
            if (auto* awaiting = std::get_if<AwaitingResult>(&state_)) {
                auto continuation = std::move(awaiting->continuation);
                state_ = Completed();
                return continuation;
            }
            if (std::holds_alternative<AwaitingInput>(state_))
                state_ = AwaitingContinuation{std::move(result)};
            return nullptr;
        });
        if (waiting)
            waiting(std::move(result));
    }

    void resumeReturning(typename ResultType::Stored value) {
        resumeWith(ResultType::success(std::move(value)));
    }
    void resume() requires std::is_void_v<Value> { resumeWith(ResultType::success()); }
    void resumeThrowing(Failure failure) { resumeWith(ResultType::failure(std::move(failure))); }

    // True once the continuation has been resumed; a result that waits for
    // its continuation doesn't count.
    bool hasCompleted() const {
        return lock_.withLock([&] { return std::holds_alternative<Completed>(state_); });
    }
    bool needsContinuation() const {
        return lock_.withLock([&] {
            return std::holds_alternative<AwaitingInput>(state_) ||
                   std::holds_alternative<AwaitingContinuation>(state_);
        });
    }
    bool needsResult() const {
        return lock_.withLock([&] {
            return std::holds_alternative<AwaitingInput>(state_) ||
                   std::holds_alternative<AwaitingResult>(state_);
        });
    }

    // `co_await proxy` suspends the coroutine as the proxy's continuation and
    // gives the value, or raises the failure (see raise()). A second
    // coroutine awaiting the same proxy is ignored and stays suspended.
    auto operator co_await() {
        struct Awaiter {
            ContinuationProxy& proxy;
            std::optional<ResultType> result;
            // Whichever of await_suspend and the continuation gets here
            // second goes on with the coroutine: the continuation resumes it,
            // or await_suspend declines to suspend it.
            std::atomic<bool> handedOver = false;

            bool await_ready() const noexcept { return false; }
            bool await_suspend(std::coroutine_handle<> caller) {
                proxy.setContinuation([this, caller](ResultType outcome) {
                    result.emplace(std::move(outcome));
                    if (handedOver.exchange(true, std::memory_order_acq_rel))
                        caller.resume();
                });
                return !handedOver.exchange(true, std::memory_order_acq_rel);
            }
            Value await_resume() { return std::move(*result).get(); }
        };
        return Awaiter{*this, std::nullopt};
    }

  private:
    struct AwaitingContinuation {
        ResultType result;
    };
    struct AwaitingResult {
        Continuation continuation;
    };
    struct AwaitingInput {};
    struct Completed {};

    mutable MutexLock lock_;
    std::variant<AwaitingInput, AwaitingContinuation, AwaitingResult, Completed> state_;
};

}  // namespace quillbox
