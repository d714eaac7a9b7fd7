#pragma once

#include "platform/TableView.h"
#include "ui/GroupWarnings.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace dunmora {

class Button;
class Command;
class ContactsController;
class Interface;
class TextField;
class View;
struct Notification;

/// What the main window says around the table: which groups to look at again, why the table is
/// empty, what the address book noted; and the commands that the user may use now.
///
/// Thread: the main thread. Errors: none.
class ReviewController final : public TableViewDelegate {
public:
    /// Finds its outlets and connects its commands in the main interface. `openBook` lets the user
    /// choose another address book and returns whether one was chosen. All must outlive the
    /// controller.
    ReviewController(Interface& mainInterface, ContactsController& contacts,
                     std::function<bool()> openBook);

    /// Subscribes to the notifications that tell what the empty table means, for the life of the
    /// process.
    void awakeFromNib();

    /// A job was started while none was running: commands that would start another are disabled,
    /// the warnings go.
    void jobsBegan();

    /// A job's thread ended with an error, which the user has acknowledged. The name is that of its
    /// body, such as "LoadContacts".
    void jobFailed(std::string_view name);

    /// No job runs any more: says what the table holds, counts the warnings, enables the commands.
    void jobsEnded();

    RowStyle styleOfRow(std::size_t row) override;
    void rowsEdited(std::span<const std::size_t> rows) override;

    void OnReload(View* sender);
    /// Takes the filter away first: every row that is about to be deleted can be seen.
    void OnDelete(View* sender);
    void OnOpen(View* sender);
    void OnCheckSelected(View* sender);
    void OnUncheckSelected(View* sender);
    /// Unchecks the first row of every group that would lose every copy.
    void OnKeepOneOfEach(View* sender);
    void OnFilter(View* sender);
    void OnNextLastCopy(View* sender);
    void OnNextEmptyFields(View* sender);
    /// Shows everything that the address book noted while it was read.
    void OnNotes(View* sender);

private:
    /// Why the table has no rows.
    enum class Emptiness { NotSearched, Working, NoPeople, NoDuplicates, Cancelled, Unreadable };

    void showEmptiness(Emptiness emptiness);
    void showWarnings();
    void showNotes();
    void jumpToNext(GroupWarning warning);

    ContactsController& contacts_;
    std::function<bool()> openBook_;
    GroupWarnings warnings_;

    TableView* tableContacts_;
    Button* btnLastCopies_;
    Button* btnEmptyFields_;
    Button* btnNotes_;
    View* vwEmpty_;
    TextField* txtEmptyTitle_;
    TextField* txtEmptyHint_;
    Button* btnEmptyOpen_;
    Command* reload_;
    Command* delete_;
    Command* open_;
    Command* keepOneOfEach_;
};

}  // namespace dunmora
