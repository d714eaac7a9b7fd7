#pragma once

#include <gio/gio.h>

#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace dunmora {

/// Gives the calling thread its own main context, so that signals of the objects created there do
/// not arrive in the main thread's loop.
class PrivateMainContext final {
public:
    PrivateMainContext() : context_(g_main_context_new())
    {
        g_main_context_push_thread_default(context_);
    }
    ~PrivateMainContext()
    {
        g_main_context_pop_thread_default(context_);
        g_main_context_unref(context_);
    }
    PrivateMainContext(const PrivateMainContext&) = delete;
    PrivateMainContext& operator=(const PrivateMainContext&) = delete;

private:
    GMainContext* context_;
};

/// Runs work that may hang on its own thread. Not every call of the service's libraries can be
/// cancelled: one that continues is abandoned with its thread, and its result is discarded. So the
/// work must own everything that it uses.
///
/// Thread: one at a time.
template <typename Result>
class BoundedCall final {
public:
    using Clock = std::chrono::steady_clock;
    using Work = std::function<Result(GCancellable*)>;

    explicit BoundedCall(Work work) : state_(std::make_shared<State>())
    {
        std::thread([state = state_, work = std::move(work)] { state->run(work); }).detach();
    }

    /// Waits for the result until the deadline, then cancels the work. Returns nothing unless the
    /// work returns soon after. Errors: what the work throws.
    std::optional<Result> resultBefore(Clock::time_point deadline)
    {
        if (!isDoneBefore(deadline)) {
            cancel();
            isDoneBefore(Clock::now() + kGrace);
        }
        return take();
    }

    /// The same for several calls in parallel; together they take no longer than one.
    friend std::vector<std::optional<Result>> resultsBefore(Clock::time_point deadline,
                                                            std::vector<BoundedCall>& calls)
    {
        for (auto& call : calls) {
            if (!call.isDoneBefore(deadline)) {
                call.cancel();
            }
        }
        const auto end = Clock::now() + kGrace;
        std::vector<std::optional<Result>> results;
        results.reserve(calls.size());
        for (auto& call : calls) {
            call.isDoneBefore(end);
            results.push_back(call.take());
        }
        return results;
    }

private:
    static constexpr std::chrono::milliseconds kGrace{300};

    bool isDoneBefore(Clock::time_point time)
    {
        std::unique_lock lock(state_->mutex);
        return state_->changed.wait_until(lock, time, [this] { return state_->isDone; });
    }

    void cancel() { g_cancellable_cancel(state_->cancellable.get()); }

    std::optional<Result> take()
    {
        const std::lock_guard guard(state_->mutex);
        if (state_->error) {
            std::rethrow_exception(state_->error);
        }
        return std::exchange(state_->result, std::nullopt);
    }

    struct State {
        void run(const Work& work)
        {
            std::optional<Result> made;
            std::exception_ptr thrown;
            try {
                const PrivateMainContext context;
                made = work(cancellable.get());
            } catch (...) {
                thrown = std::current_exception();
            }
            const std::lock_guard guard(mutex);
            result = std::move(made);
            error = thrown;
            isDone = true;
            changed.notify_all();
        }

        std::shared_ptr<GCancellable> cancellable{g_cancellable_new(), g_object_unref};
        std::mutex mutex;
        std::condition_variable changed;
        bool isDone = false;
        std::optional<Result> result;
        std::exception_ptr error;
    };

    std::shared_ptr<State> state_;
};

}  // namespace dunmora
