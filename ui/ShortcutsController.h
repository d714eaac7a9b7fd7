#pragma once

#include "ui/WindowController.h"

namespace dunmora {

/// The window that lists the keys of the main window.
///
/// Thread: the main thread. Errors: none.
class ShortcutsController final : public WindowController {
public:
    /// The main interface must outlive the controller.
    explicit ShortcutsController(const Interface& mainInterface);

private:
    void windowDidLoad(Interface& interface) override;

    const Interface& mainInterface_;
};

}  // namespace dunmora
