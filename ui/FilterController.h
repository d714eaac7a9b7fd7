#pragma once

#include "ui/ModalController.h"

namespace dunmora {

class CheckBox;
class View;

/// The dialog in which the user chooses the match fields. A click is stored at once, so cancelling
/// does not undo it; the dialog is not confirmed while no field is chosen. One object serves one
/// showing.
///
/// Thread: the main thread. Errors: none.
class FilterController final : public ModalController {
public:
    FilterController();

    /// Runs the dialog and returns whether the user confirmed it.
    bool showModal();

    /// Stores the state of the box that was clicked; any other sender is ignored.
    void OnCheckBoxes(View* sender);

    /// Confirms when at least one field is chosen, else says that one should be.
    void OnOkay(View* sender);

    void OnCancel(View* sender);

private:
    void windowDidLoad(Interface& interface) override;

    CheckBox* btnFilterNickname_ = nullptr;
    CheckBox* btnFilterFirstname_ = nullptr;
    CheckBox* btnFilterLastname_ = nullptr;
    CheckBox* btnFilterHome_ = nullptr;
    CheckBox* btnFilterWork_ = nullptr;
    CheckBox* btnFilterMobile_ = nullptr;
    bool result_ = false;
};

}  // namespace dunmora
