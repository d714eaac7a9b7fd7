#pragma once

#include "platform/Application.h"
#include "platform/Window.h"

namespace dunmora {

class View;
struct Notification;

/// The application controller: starts the jobs on threads of their own and chains them. A load is
/// followed by the match-field dialog, a confirmed dialog by a search, a search and a deletion by
/// "msgReload".
///
/// Thread: the main thread, but for the two thread bodies.
class DunmoraAppDelegate final : public ApplicationDelegate, public WindowDelegate {
public:
    DunmoraAppDelegate() = default;
    DunmoraAppDelegate(const DunmoraAppDelegate&) = delete;
    DunmoraAppDelegate& operator=(const DunmoraAppDelegate&) = delete;

    /// Unsubscribes: the program keeps its delegate until it ends, but where one ends before, the
    /// next job's end must not reach it.
    ~DunmoraAppDelegate() override;

    /// The main window; not owned.
    Window* window() const { return window_; }
    void setWindow(Window* window) { window_ = window; }

    /// Starts the silent update check and then subscribes to "msgFinished" for the life of the
    /// process; the first load waits for the first activation.
    void applicationDidFinishLaunching() override;

    /// Starts the first load, once.
    void applicationDidBecomeActive() override;

    /// The main window's end is the application's.
    void windowWillClose() override;

    /// Checks for an update with the update window shown.
    void OnCheckForUpdate(View* sender);

    /// Opens a fresh progress window and hands it to `AppData`.
    void showProgress();

    /// Thread bodies: the engine's jobs. Thread: a worker. Errors: what the engine throws.
    void LoadContacts();
    void FindDuplicates();

    /// Ends the job that has finished and chains the next one. The posting thread waits until it
    /// has run on the main thread, dialog included.
    void OnFinished(const Notification& notification);

private:
    Window* window_ = nullptr;
    bool alreadyRun_ = false;
};

}  // namespace dunmora
