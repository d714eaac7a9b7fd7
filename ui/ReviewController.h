#pragma once

#include "platform/AddressBook.h"
#include "platform/TableView.h"
#include "review/GroupWarnings.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

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
/// It asks the engine and the address book nothing while a job runs.
///
/// Thread: the main thread, but for `OnFinished`. Errors: none.
class ReviewController final : public TableViewDelegate {
public:
    /// Finds its outlets and connects its commands in the main interface. `openBook` lets the user
    /// choose another address book and returns whether one was chosen. All must outlive the
    /// controller.
    ReviewController(Interface& mainInterface, ContactsController& contacts,
                     std::function<bool()> openBook);
    ~ReviewController() override;
    ReviewController(const ReviewController&) = delete;
    ReviewController& operator=(const ReviewController&) = delete;

    /// Subscribes to "msgFinished" for as long as it lives. To be called before anyone subscribes
    /// who starts the next job from there, so that the ends of jobs are heard in their order.
    void awakeFromNib();

    /// Tells whether there is an address book to read at all.
    void setBookIsOpen(bool isOpen);

    /// A job was started while none was running: commands that would start another are disabled,
    /// the warnings go. The name is that of the job's thread.
    void jobsBegan(std::string_view name);

    /// A job's thread ended with an error, which the user has acknowledged; the engine has no rows
    /// any more.
    void jobFailed(std::string_view name);

    /// No job runs any more: says what the table holds, counts the warnings, enables the commands.
    void jobsEnded();

    RowStyle styleOfRow(std::size_t row) override;
    void rowsEdited(std::span<const std::size_t> rows) override;

    /// Remembers what the last job was. The posting thread waits until it has run on the main
    /// thread.
    void OnFinished(const Notification& notification);

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
    enum class Emptiness {
        NotSearched,
        Working,
        NoBook,
        NoPeople,
        NoDuplicates,
        NoneLeft,
        Cancelled,
        Unreadable,
        Unfinished
    };
    /// How far the last job got.
    enum class LastJob { None, Loaded, Found, Deleted, LoadFailed, SearchFailed };

    Emptiness emptiness() const;
    void showEmptiness(Emptiness emptiness);
    void showRows();
    void showWarnings();
    void showNotes();
    void enableCommands();
    void jumpToNext(GroupWarning warning);

    ContactsController& contacts_;
    std::function<bool()> openBook_;
    GroupWarnings warnings_;
    ReadingNotes notes_;
    LastJob lastJob_ = LastJob::None;
    bool jobsRun_ = false;
    bool bookIsOpen_ = true;

    TableView* tableContacts_;
    Button* btnLastCopies_;
    Button* btnEmptyFields_;
    Button* btnNotes_;
    TextField* txtTotal_;
    View* vwEmpty_;
    TextField* txtEmptyTitle_;
    TextField* txtEmptyHint_;
    Button* btnEmptyOpen_;
    // Those that begin a job from anything, and those that need rows.
    std::vector<Command*> beginnings_;
    std::vector<Command*> rowCommands_;
};

}  // namespace dunmora
