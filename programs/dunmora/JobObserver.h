#pragma once

#include <exception>
#include <string_view>

namespace dunmora {

/// Is notified when jobs begin, fail and end. A job is a thread that the program detached, with the
/// thread's name.
///
/// Thread: the main thread. Errors: none.
class JobObserver {
public:
    virtual ~JobObserver() = default;

    /// A job begins while none is running.
    virtual void jobsBegan(std::string_view name) = 0;

    /// A job has failed with this exception. The job counts as running until this returns, as do
    /// jobs started meanwhile.
    virtual void jobFailed(std::string_view name, const std::exception_ptr& failure) = 0;

    /// The last job has ended.
    virtual void jobsEnded() = 0;
};

}  // namespace dunmora
