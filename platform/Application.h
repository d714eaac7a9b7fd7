#pragma once

#include <functional>
#include <string_view>

namespace dunmora {

class Window;

/// Who hears of the application's life.
///
/// Thread: the main thread. Errors: none.
class ApplicationDelegate {
public:
    virtual ~ApplicationDelegate() = default;

    /// Once, after the main interface has been loaded.
    virtual void applicationDidFinishLaunching() = 0;

    /// Each time the application becomes the one that the user works with.
    virtual void applicationDidBecomeActive() = 0;
};

/// The running program: its end, its modal sessions and its threads.
class Application {
public:
    /// What `runModalForWindow` returns for a session that `abortModal` has ended.
    static constexpr int kRunAborted = -1001;

    virtual ~Application() = default;

    /// Ends the process with status 0, at once, whatever runs; what is being saved is either saved
    /// or not. Threads that wait for the main thread are let go.
    /// Thread: the main thread. Errors: none.
    virtual void terminate(const void* sender) = 0;

    /// Shows the window and lets the user work with it alone until `abortModal`; returns
    /// `kRunAborted` then. Sessions nest. The main window can be closed all the same.
    /// Thread: the main thread, whose events go on meanwhile. Errors: none.
    virtual int runModalForWindow(Window& window) = 0;

    /// Ends the innermost modal session; without one it does nothing.
    /// Thread: the main thread. Errors: none.
    virtual void abortModal() = 0;

    /// Runs the body on a new thread, which ends with it. The name is that of the operation, such
    /// as "LoadContacts". What the body throws is told to the user, not to the caller.
    /// Thread: the main thread; does not wait.
    virtual void detachNewThread(std::string_view name, std::function<void()> body) = 0;

    /// Runs the work on the main thread and returns when it has run; on the main thread at once.
    /// What the work throws leaves this call.
    /// Thread: any; blocks.
    virtual void performOnMainThread(const std::function<void()>& work) = 0;
};

}  // namespace dunmora
