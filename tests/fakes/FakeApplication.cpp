#include "tests/fakes/FakeApplication.h"

#include <stdexcept>
#include <utility>

namespace dunmora::test {

int FakeApplication::runModalForWindow(Window& window)
{
    const auto outer = sessions_++;
    onRunModal(window);
    while (sessions_ > outer) {
        if (!handleNext()) {
            throw std::logic_error("nobody is left to end the modal session");
        }
    }
    return kRunAborted;
}

void FakeApplication::abortModal()
{
    if (sessions_ == 0) {
        ++abortsWithoutSession;
        return;
    }
    --sessions_;
    ++abortedSessions;
}

void FakeApplication::detachNewThread(std::string_view name, std::function<void()> body)
{
    threads.emplace_back(name);
    onDetach(name);
    {
        const std::lock_guard guard(mutex_);
        ++running_;
    }
    workers_.emplace_back([this, body = std::move(body)] {
        std::exception_ptr failure;
        try {
            body();
        } catch (...) {
            failure = std::current_exception();
        }
        const std::lock_guard guard(mutex_);
        if (failure) {
            failures.push_back(failure);
        }
        --running_;
        changed_.notify_all();
    });
}

void FakeApplication::performOnMainThread(const std::function<void()>& work)
{
    if (isMainThread()) {
        work();
        return;
    }
    Work carried{&work, {}};
    std::unique_lock lock(mutex_);
    queue_.push_back(&carried);
    changed_.notify_all();
    changed_.wait(lock, [&] { return carried.isDone; });
    if (carried.failure) {
        std::rethrow_exception(carried.failure);
    }
}

void FakeApplication::runUntilIdle()
{
    while (handleNext()) {}
    workers_.clear();
}

bool FakeApplication::handleNext()
{
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return !queue_.empty() || running_ == 0; });
    if (queue_.empty()) {
        return false;
    }
    auto& work = *queue_.front();
    queue_.pop_front();
    lock.unlock();
    try {
        (*work.run)();
    } catch (...) {
        work.failure = std::current_exception();
    }
    lock.lock();
    work.isDone = true;
    changed_.notify_all();
    return true;
}

}  // namespace dunmora::test
