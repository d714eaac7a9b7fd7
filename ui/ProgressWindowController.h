#pragma once

#include "ui/WindowController.h"

#include <memory>

namespace dunmora {

struct Notification;

/// The small window that shows how far the running job is: a line of text and a bar, fed by the
/// notifications of the jobs and by nothing else.
///
/// Thread: the main thread, but for the two handlers, which run on the posting thread and never
/// wait for the main one; its end may come on any thread.
class ProgressWindowController final : public WindowController {
public:
    /// A new controller with its window loaded and its handlers subscribed, which lasts as long as
    /// somebody holds it; none, with nothing subscribed, when the window cannot be loaded.
    static std::shared_ptr<ProgressWindowController> init();

    ProgressWindowController(const ProgressWindowController&) = delete;
    ProgressWindowController& operator=(const ProgressWindowController&) = delete;

    /// Unsubscribes both handlers. A post under way on another thread finishes first or finds
    /// nobody.
    ~ProgressWindowController() override;

    /// Draws the numbers of a `kMsgProgress`; what is missing counts as 0.
    void OnProgress(const Notification& notification);

    /// Shows the text of a `kMsgShowMessage`.
    void OnShowMessage(const Notification& notification);

private:
    ProgressWindowController();

    void windowDidLoad(Interface& interface) override;

    ProgressIndicator* progress_ = nullptr;
    TextField* txtInfo_ = nullptr;
};

}  // namespace dunmora
