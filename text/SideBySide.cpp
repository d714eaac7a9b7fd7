#include "text/SideBySide.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace dunmora {

namespace {

/// The tasks that several threads share.
class Tasks final {
public:
    Tasks(std::size_t count, const std::function<void(std::size_t)>& task)
        : count_(count), task_(task)
    {
    }

    /// Runs tasks until none is left to start. Never throws: a thread could not report it.
    void run() noexcept
    {
        for (auto number = next_++; number < count_; number = next_++) {
            try {
                task_(number);
            } catch (...) {
                fail(number, std::current_exception());
            }
        }
    }

    /// To be called when all threads have ended.
    void rethrow() const
    {
        if (failure_ != nullptr) {
            std::rethrow_exception(failure_);
        }
    }

private:
    /// Every number below this one has been taken already, so the lowest failure is always found.
    void fail(std::size_t number, std::exception_ptr failure)
    {
        next_ = count_;
        const std::lock_guard lock(mutex_);
        if (failure_ == nullptr || number < failed_) {
            failed_ = number;
            failure_ = std::move(failure);
        }
    }

    const std::size_t count_;
    const std::function<void(std::size_t)>& task_;
    std::atomic<std::size_t> next_ = 0;
    std::mutex mutex_;
    std::size_t failed_ = 0;
    std::exception_ptr failure_;
};

/// Joins its threads when it is destroyed.
class Threads final {
public:
    Threads() = default;
    ~Threads()
    {
        for (auto& thread : threads_) {
            thread.join();
        }
    }
    Threads(const Threads&) = delete;
    Threads& operator=(const Threads&) = delete;

    /// Starts `count` threads, or fewer if the system refuses more.
    void start(std::size_t count, Tasks& tasks)
    {
        threads_.reserve(count);
        try {
            while (threads_.size() < count) {
                threads_.emplace_back([&tasks] { tasks.run(); });
            }
        } catch (const std::system_error&) {
            // The caller's thread and those that were started do all the work.
        }
    }

private:
    std::vector<std::thread> threads_;
};

}  // namespace

std::size_t processors()
{
    return std::max(1U, std::thread::hardware_concurrency());
}

void runSideBySide(std::size_t count, std::size_t threads,
                   const std::function<void(std::size_t)>& task)
{
    Tasks tasks(count, task);
    {
        Threads others;
        if (const auto wanted = std::min(count, threads); wanted > 1) {
            others.start(wanted - 1, tasks);
        }
        tasks.run();
    }
    tasks.rethrow();
}

}  // namespace dunmora
