#include "ui/ModalController.h"

#include "platform/Application.h"
#include "platform/Desktop.h"

namespace dunmora {

int ModalController::DoModal()
{
    auto* const dialog = window();
    if (dialog == nullptr) {
        return 0;
    }
    isModal_ = true;
    return Desktop::current().application.runModalForWindow(*dialog);
}

void ModalController::CancelModal()
{
    if (isModal_) {
        Desktop::current().application.abortModal();
    }
    isModal_ = false;
}

}  // namespace dunmora
