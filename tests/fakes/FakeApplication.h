#pragma once

#include "platform/Application.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace dunmora::test {

/// An application whose main thread is the one that created it, with real worker threads. The main
/// thread runs the work posted to it when the test says so.
class FakeApplication final : public Application {
public:
    FakeApplication() : mainThread_(std::this_thread::get_id()) {}
    /// Waits for every thread and runs the work that they still post.
    ~FakeApplication() override { runUntilIdle(); }
    FakeApplication(const FakeApplication&) = delete;
    FakeApplication& operator=(const FakeApplication&) = delete;

    void terminate(const void* sender) override { terminations.push_back(sender); }

    /// Calls `onRunModal`, then handles events until the session is aborted.
    int runModalForWindow(Window& window) override;
    void abortModal() override;
    void detachNewThread(std::string_view name, std::function<void()> body) override;
    void performOnMainThread(const std::function<void()>& work) override;

    /// Runs posted work until no thread is running. Exceptions that threads throw are put into
    /// `failures`.
    void runUntilIdle();

    bool isMainThread() const { return std::this_thread::get_id() == mainThread_; }

    /// The sender of each call of `terminate`.
    std::vector<const void*> terminations;
    /// The names of the threads started, in order.
    std::vector<std::string> threads;
    /// How many modal sessions were ended by `abortModal`, and how many calls found none.
    std::size_t abortedSessions = 0;
    std::size_t abortsWithoutSession = 0;
    /// What the user does in a modal session; must end it, now or through later events.
    std::function<void(Window& window)> onRunModal = [this](Window& /*window*/) { abortModal(); };
    /// Called with the name of each thread before it runs.
    std::function<void(std::string_view name)> onDetach = [](std::string_view /*name*/) {};
    /// The exceptions that thread bodies have thrown.
    std::vector<std::exception_ptr> failures;

private:
    struct Work {
        const std::function<void()>* run;
        std::exception_ptr failure;
        bool isDone = false;
    };

    /// Waits for one piece of posted work and runs it. Returns false once no thread is running.
    bool handleNext();

    std::thread::id mainThread_;
    std::size_t sessions_ = 0;
    std::vector<std::jthread> workers_;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Work*> queue_;
    std::size_t running_ = 0;
};

}  // namespace dunmora::test
