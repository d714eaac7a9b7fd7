#pragma once

#include "platform/Application.h"
#include "platform/Window.h"

namespace dunmora {

class View;
struct Notification;

/// The application controller: starts each job on a new thread and chains the jobs. A load is
/// followed by the match-field dialog, a confirmed dialog by a search, and a search or a deletion
/// by "msgReload".
///
/// Thread: the main thread, except for the two thread bodies.
class DunmoraAppDelegate final : public ApplicationDelegate, public WindowDelegate {
public:
    DunmoraAppDelegate() = default;
    DunmoraAppDelegate(const DunmoraAppDelegate&) = delete;
    DunmoraAppDelegate& operator=(const DunmoraAppDelegate&) = delete;

    /// Unsubscribes, so that no later job calls a destroyed delegate.
    ~DunmoraAppDelegate() override;

    /// The main window; not owned.
    Window* window() const { return window_; }
    void setWindow(Window* window) { window_ = window; }

    /// Starts the silent update check, then subscribes to "msgFinished". The first load waits for
    /// the first activation.
    void applicationDidFinishLaunching() override;

    /// Starts the first load, once.
    void applicationDidBecomeActive() override;

    /// Closing the main window terminates the application.
    void windowWillClose() override;

    /// Checks for an update with the update window shown.
    void OnCheckForUpdate(View* sender);

    /// Opens a new progress window and stores it in `AppData`.
    void showProgress();

    /// Thread bodies that run the engine's jobs. Thread: a worker. Errors: what the engine throws.
    void LoadContacts();
    void FindDuplicates();

    /// Closes the progress window of the finished job and starts the next job. The posting thread
    /// waits until this has run on the main thread, including the dialog.
    void OnFinished(const Notification& notification);

private:
    Window* window_ = nullptr;
    bool alreadyRun_ = false;
};

}  // namespace dunmora
