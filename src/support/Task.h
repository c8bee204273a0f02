#pragma once

#include <condition_variable>
#include <coroutine>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "support/TaskCancellation.h"

namespace quillbox {

template <typename T = void>
class Task;

namespace detail {

template <typename T>
using TaskValue = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

// What a task and its handles share: the outcome once the body has ended, the
// coroutines that await it, and the task's cancellation. It outlives the
// coroutine frame, which destroys itself when the body ends.
template <typename T>
class TaskState {
  public:
    void setOutcome(TaskValue<T> value) {
        outcome_.emplace(std::in_place_index<0>, std::move(value));
    }
    void setOutcome(std::exception_ptr error) { outcome_.emplace(std::in_place_index<1>, error); }

    // Marks the task done, wakes the threads that wait for it and resumes the
    // coroutines that await it, with no lock held.
    void publish() {
        std::vector<std::coroutine_handle<>> awaiting;
        {
            std::lock_guard guard(mutex_);
            done_ = true;
            awaiting.swap(awaiting_);
        }
        finished_.notify_all();
        for (auto handle : awaiting)
            handle.resume();
    }

    bool isDone() const {
        std::lock_guard guard(mutex_);
        return done_;
    }

    void wait() const {
        std::unique_lock guard(mutex_);
        finished_.wait(guard, [&] { return done_; });
    }

    // Registers a coroutine to resume when the task is done; false when it
    // already is, and the coroutine should go on at once.
    bool resumeWhenDone(std::coroutine_handle<> handle) {
        std::lock_guard guard(mutex_);
        if (done_)
            return false;
        awaiting_.push_back(handle);
        return true;
    }

    // The value, or the error the body ended with raised. Only once done.
    T get() const {
        if (outcome_->index() == 1)
            std::rethrow_exception(std::get<1>(*outcome_));
        if constexpr (!std::is_void_v<T>)
            return std::get<0>(*outcome_);
    }

    const std::shared_ptr<TaskCancellation> cancellation = std::make_shared<TaskCancellation>();

  private:
    mutable std::mutex mutex_;
    mutable std::condition_variable finished_;
    bool done_ = false;
    std::vector<std::coroutine_handle<>> awaiting_;
    // Written by the body before publish() and read only after done_ is seen.
    std::optional<std::variant<TaskValue<T>, std::exception_ptr>> outcome_;
};

template <typename T>
struct TaskPromiseBase {
    std::shared_ptr<TaskState<T>> state = std::make_shared<TaskState<T>>();

    Task<T> get_return_object();
    // A task starts at once, on the thread that calls it, and runs until its
    // first suspension.
    std::suspend_never initial_suspend() noexcept { return {}; }
    auto final_suspend() noexcept {
        struct Finish {
            bool await_ready() noexcept { return false; }
            void await_suspend(std::coroutine_handle<> frame) noexcept {
                auto finished = std::move(state);
                frame.destroy();
                finished->publish();
            }
            void await_resume() noexcept {}
            std::shared_ptr<TaskState<T>> state;
        };
        return Finish{state};
    }
    void unhandled_exception() { state->setOutcome(std::current_exception()); }

    // The awaits inside the body hear of the task's cancellation through it.
    const std::shared_ptr<TaskCancellation>& cancellation() const { return state->cancellation; }
};

template <typename T>
struct TaskPromise : TaskPromiseBase<T> {
    void return_value(T value) { this->state->setOutcome(std::move(value)); }
};

template <>
struct TaskPromise<void> : TaskPromiseBase<void> {
    void return_void() { state->setOutcome(std::monostate()); }
};

}  // namespace detail

// A coroutine that starts at once and runs on whichever thread resumes it:
// the caller's until its first suspension, then the thread that completes
// what it awaits (a producer yielding into a stream, say).
//
// The handle doesn't own the work: dropping it leaves the coroutine running,
// and the coroutine's frame goes away by itself when the body ends. The
// handle waits for the outcome (blocking a thread with result(), or
// suspending another coroutine with co_await) and cancels.
//
// Cancellation is cooperative. cancel() sets the task's flag and tells the
// awaits that registered with it: an await of a stream's next() in this
// task's own body cancels that stream (with its errorOnCancellation), so the
// await ends with that error once the stream's buffer is drained. A task
// that awaits another task doesn't pass its cancellation on.
template <typename T>
class Task {
  public:
    using promise_type = detail::TaskPromise<T>;

    explicit Task(std::shared_ptr<detail::TaskState<T>> state) : state_(std::move(state)) {}

    bool isDone() const { return state_->isDone(); }
    // Blocks this thread until the body has ended.
    void wait() const { state_->wait(); }
    // Blocks until the body has ended; its value, or its error raised.
    T result() const {
        state_->wait();
        return state_->get();
    }

    void cancel() const { state_->cancellation->cancel(); }
    bool isCancelled() const { return state_->cancellation->isCancelled(); }

    // Awaiting a task from another coroutine gives its value or raises its
    // error. Any number of coroutines may await one task.
    auto operator co_await() const {
        struct Awaiter {
            std::shared_ptr<detail::TaskState<T>> state;
            bool await_ready() const { return state->isDone(); }
            bool await_suspend(std::coroutine_handle<> awaiting) {
                return state->resumeWhenDone(awaiting);
            }
            T await_resume() const { return state->get(); }
        };
        return Awaiter{state_};
    }

  private:
    std::shared_ptr<detail::TaskState<T>> state_;
};

template <typename T>
Task<T> detail::TaskPromiseBase<T>::get_return_object() {
    return Task<T>(state);
}

// True in the coroutine handle of a task, whose awaits can hear of its
// cancellation.
template <typename Promise>
concept CancellablePromise = requires(const Promise& promise) {
    { promise.cancellation() } -> std::convertible_to<std::shared_ptr<TaskCancellation>>;
};

}  // namespace quillbox
