#include "ui/WindowController.h"

#include "platform/Desktop.h"

namespace dunmora {

Window* WindowController::window()
{
    if (!interface_) {
        interface_ = Desktop::current().interfaceLoader.load(interfaceName_);
        if (!interface_) {
            return nullptr;
        }
        windowDidLoad(*interface_);
    }
    return &interface_->window();
}

void WindowController::showWindow(const void* /*sender*/, KeyboardFocus focus)
{
    if (auto* const loaded = window()) {
        loaded->show(focus);
    }
}

void WindowController::close()
{
    if (interface_) {
        interface_->window().close();
    }
}

}  // namespace dunmora
