#pragma once

#include <functional>
#include <string_view>

namespace dunmora {

class Window;

/// Is notified of changes in the application's state.
///
/// Thread: the main thread. Errors: none.
class ApplicationDelegate {
public:
    virtual ~ApplicationDelegate() = default;

    /// Called once, after the main interface has been loaded.
    virtual void applicationDidFinishLaunching() = 0;

    /// Called each time the application becomes the active one.
    virtual void applicationDidBecomeActive() = 0;
};

/// The running program: its termination, modal sessions and threads.
class Application {
public:
    /// Returned by `runModalForWindow` for a session ended by `abortModal`.
    static constexpr int kRunAborted = -1001;

    virtual ~Application() = default;

    /// Ends the process with status 0 at once, even while jobs run; a save in progress takes effect
    /// completely or not at all. Does not wait for any thread.
    /// Thread: the main thread. Errors: none.
    virtual void terminate(const void* sender) = 0;

    /// Shows the window and blocks the user's input to all others until `abortModal`; then returns
    /// `kRunAborted`. Sessions nest. The main window can still be closed.
    /// Thread: the main thread, whose events are still handled. Errors: none.
    virtual int runModalForWindow(Window& window) = 0;

    /// Ends the innermost modal session, if any.
    /// Thread: the main thread. Errors: none.
    virtual void abortModal() = 0;

    /// Runs the body on a new thread. The name is that of the operation, such as "LoadContacts".
    /// Thread: the main thread; does not block.
    /// Errors: none; what the body throws is reported to the user.
    virtual void detachNewThread(std::string_view name, std::function<void()> body) = 0;

    /// Runs the work on the main thread and returns when it has finished; runs it directly if
    /// called on the main thread.
    /// Thread: any; blocks. Errors: rethrows what the work throws.
    virtual void performOnMainThread(const std::function<void()>& work) = 0;
};

}  // namespace dunmora
