#pragma once

#include "platform/AddressBook.h"

namespace dunmora {

class Button;
class Interface;

/// The button below the review table that shows what the address book noted while it was read: a
/// remark alone as it is, several as their number. Shows all of it in an alert. Hidden while there
/// is nothing to show.
///
/// Thread: the main thread. Errors: none.
class ReadingNotesButton final {
public:
    /// Finds its outlet in the main interface, which must outlive this.
    explicit ReadingNotesButton(Interface& mainInterface);

    void setNotes(ReadingNotes notes);

    /// Shows all notes; does nothing while there are none.
    void showAlert() const;

private:
    Button* btnNotes_;
    ReadingNotes notes_;
};

}  // namespace dunmora
