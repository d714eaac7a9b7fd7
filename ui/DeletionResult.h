#pragma once

#include <cstddef>
#include <string>

namespace dunmora {

class Button;
class Interface;
class TextField;
class View;

/// The line below the review table that reports a deletion, with buttons to undo it and to save the
/// people removed, or reports that it was undone.
///
/// Thread: the main thread. Errors: none.
class DeletionResult final {
public:
    /// Finds its outlets in the main interface, which must outlive this.
    explicit DeletionResult(Interface& mainInterface);

    /// Reports a deletion; the buttons are shown if it can be undone.
    void showDeleted(std::size_t people, bool canUndo);
    void showRestored(std::size_t people);
    void hide();

private:
    void show(const std::string& text, bool withButtons);

    View* vwDeletion_;
    TextField* txtDeletion_;
    Button* btnUndoDelete_;
    Button* btnSaveRemoved_;
};

}  // namespace dunmora
