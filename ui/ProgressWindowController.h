#pragma once

#include "ui/WindowController.h"

#include <memory>

namespace dunmora {

struct Notification;

/// The small window that shows the progress of the running job: a line of text and a bar, updated
/// only by the notifications of the jobs.
///
/// Thread: the main thread, except the two handlers, which run on the posting thread and never wait
/// for the main one, and the destructor, which may run on any. Errors: none.
class ProgressWindowController final : public WindowController {
public:
    /// Returns a controller with its window loaded and its handlers subscribed; null, with nothing
    /// subscribed, when the window cannot be loaded.
    static std::shared_ptr<ProgressWindowController> init();

    ProgressWindowController(const ProgressWindowController&) = delete;
    ProgressWindowController& operator=(const ProgressWindowController&) = delete;

    /// Unsubscribes both handlers. A post that is running on another thread finishes first or no
    /// longer reaches them.
    ~ProgressWindowController() override;

    /// Shows the numbers of a `kMsgProgress`; a missing number counts as 0.
    void OnProgress(const Notification& notification);

    /// Shows the text of a `kMsgShowMessage`.
    void OnShowMessage(const Notification& notification);

private:
    ProgressWindowController();

    void windowDidLoad(Interface& interface) override;

    ProgressIndicator* progress_ = nullptr;
    TextField* txtInfo_ = nullptr;
};

/// Opens a progress window for a job that is about to start and stores it in `AppData`; stores null
/// when the window cannot be loaded.
/// Thread: the main thread. Errors: none.
void openProgressWindow(const void* sender);

/// Closes the progress window in `AppData`, if there is one, and removes it from there.
/// Thread: the main thread. Errors: none.
void closeProgressWindow();

}  // namespace dunmora
