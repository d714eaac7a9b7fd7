#pragma once

#include "ui/ModalController.h"

#include <vector>

namespace dunmora {

class CheckBox;
class View;
struct MatchPreference;

/// The dialog in which the user chooses the match fields. A click is stored at once, so cancelling
/// does not undo it; the dialog cannot be confirmed while no field is chosen. Create one for each
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

    /// Confirms the dialog, or shows a message when no field is chosen.
    void OnOkay(View* sender);

    void OnCancel(View* sender);

private:
    void windowDidLoad(Interface& interface) override;

    struct Box {
        const MatchPreference& preference;
        CheckBox& checkBox;
    };

    // One for each match field; none until the window is loaded.
    std::vector<Box> boxes_;
    bool result_ = false;
};

}  // namespace dunmora
