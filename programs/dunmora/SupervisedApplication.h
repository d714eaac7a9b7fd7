#pragma once

#include "platform/Application.h"

#include <cstddef>
#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace dunmora {

class JobObserver;

/// Wraps another application and supervises its jobs: counts their threads, and reports exceptions
/// that leave them.
class SupervisedApplication final : public Application {
public:
    /// `application` must outlive this object.
    explicit SupervisedApplication(Application& application) : application_(application) {}
    ~SupervisedApplication() override = default;
    SupervisedApplication(const SupervisedApplication&) = delete;
    SupervisedApplication& operator=(const SupervisedApplication&) = delete;

    /// `observer` may be null; it must stay alive until it is replaced or this object is destroyed.
    /// Thread: the main thread, while no job runs.
    void setObserver(JobObserver* observer) { observer_ = observer; }

    /// Whether a job runs. Thread: the main thread.
    bool isBusy() const { return running_ > 0; }

    void terminate(const void* sender) override { application_.terminate(sender); }
    int runModalForWindow(Window& window) override
    {
        return application_.runModalForWindow(window);
    }
    void abortModal() override { application_.abortModal(); }

    /// Reports a thread that cannot be started as a failed job.
    void detachNewThread(std::string_view name, std::function<void()> body) override;
    /// Runs the body on a new thread that is no job: it changes nothing that a job uses, and throws
    /// nothing. Thread: the main thread; does not block. Errors: std::system_error.
    void detachBackgroundThread(std::string_view name, std::function<void()> body)
    {
        application_.detachNewThread(name, std::move(body));
    }
    void performOnMainThread(const std::function<void()>& work) override
    {
        application_.performOnMainThread(work);
    }

private:
    void run(const std::string& name, const std::function<void()>& body);
    /// `failure` is null unless the job has failed.
    void jobEnded(const std::string& name, const std::exception_ptr& failure);

    Application& application_;
    JobObserver* observer_ = nullptr;
    // Used on the main thread only.
    std::size_t running_ = 0;
};

}  // namespace dunmora
