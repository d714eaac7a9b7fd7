#pragma once

#include "ui/WindowController.h"

namespace dunmora {

/// Base class of dialogs that run as an application-modal session. A session always ends by abort,
/// so its return code means nothing: a dialog stores its own result and closes its own window.
///
/// Thread: the main thread. Errors: none.
class ModalController : public WindowController {
public:
    /// Whether this controller's session is running.
    bool isModal() const { return isModal_; }

    /// Runs the window as a modal session until `CancelModal` and returns the session's code;
    /// returns 0 without running a session when the window cannot be loaded.
    int DoModal();

    /// Ends the session if it is running.
    void CancelModal();

protected:
    using WindowController::WindowController;

private:
    bool isModal_ = false;
};

}  // namespace dunmora
