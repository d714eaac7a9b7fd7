#pragma once

#include "platform/Application.h"

#include <cstddef>
#include <optional>
#include <string>

namespace dunmora {

class JobObserver;

/// Another application whose threads are watched: their number is known, and what leaves one of
/// them is caught and told.
class SupervisedApplication final : public Application {
public:
    /// `application` must outlive it.
    explicit SupervisedApplication(Application& application) : application_(application) {}
    ~SupervisedApplication() override = default;
    SupervisedApplication(const SupervisedApplication&) = delete;
    SupervisedApplication& operator=(const SupervisedApplication&) = delete;

    /// Tells this one of all jobs from here on; none is none. It must outlive the application, or
    /// the last call of this. Thread: the main thread, while no job runs.
    void setObserver(JobObserver* observer) { observer_ = observer; }

    /// Whether a job runs. Thread: the main thread.
    bool isBusy() const { return running_ > 0; }

    void terminate(const void* sender) override { application_.terminate(sender); }
    int runModalForWindow(Window& window) override
    {
        return application_.runModalForWindow(window);
    }
    void abortModal() override { application_.abortModal(); }

    /// A thread that cannot be started is a job that failed.
    void detachNewThread(std::string_view name, std::function<void()> body) override;
    void performOnMainThread(const std::function<void()>& work) override
    {
        application_.performOnMainThread(work);
    }

private:
    void run(const std::string& name, const std::function<void()>& body);
    /// With a text the job has failed.
    void jobEnded(const std::string& name, const std::optional<std::string>& failure);

    Application& application_;
    JobObserver* observer_ = nullptr;
    // Changes on the main thread alone.
    std::size_t running_ = 0;
};

}  // namespace dunmora
