#pragma once

#include "ui/WindowController.h"

namespace dunmora {

/// The base of dialogs that run as an application-modal session. A session always ends by abort,
/// so the code it returns carries no meaning; a dialog keeps its outcome in a field of its own and
/// closes its window itself.
///
/// Thread: the main thread. Errors: none.
class ModalController : public WindowController {
public:
    /// Whether a session that this controller started is running.
    bool isModal() const { return isModal_; }

    /// Runs the window as a modal session until `CancelModal`; returns the session's code, or 0
    /// without a session when there is no window.
    int DoModal();

    /// Ends the session, if one runs.
    void CancelModal();

protected:
    using WindowController::WindowController;

private:
    bool isModal_ = false;
};

}  // namespace dunmora
