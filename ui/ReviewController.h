#pragma once

#include "platform/OpenPanel.h"
#include "platform/TableView.h"
#include "review/GroupWarnings.h"
#include "ui/CardReview.h"
#include "ui/CheckedCount.h"
#include "ui/EmptyPage.h"
#include "ui/MarkCommands.h"
#include "ui/ReadingNotesButton.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
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

/// The main window around the review table: warns about groups, explains why the table is empty,
/// shows what the address book noted, and enables the commands that make sense now. It also decides
/// how the table's rows look and what the user's typing finds.
///
/// It does not use the engine or the address book while a job runs.
///
/// Thread: the main thread, except `OnFinished`. Errors: none.
class ReviewController final : public TableViewDelegate {
public:
    /// Finds its outlets and connects its commands in the main interface. `openBook` lets the user
    /// choose another address book and returns whether one was chosen. All must outlive the
    /// controller.
    ReviewController(Interface& mainInterface, ContactsController& contacts,
                     std::function<bool(OpenPanel::Kind)> openBook);
    ~ReviewController() override;
    ReviewController(const ReviewController&) = delete;
    ReviewController& operator=(const ReviewController&) = delete;

    /// Subscribes to "msgFinished" until it is destroyed. Call it before the observers that start
    /// the next job from that notification subscribe, so that this one sees the jobs end in order.
    void awakeFromNib();

    /// Sets whether there is an address book to read, and the reason for the page without one, if
    /// there is any to show. Call it while no job runs.
    void setBookIsOpen(bool isOpen, std::string_view reason = {});

    /// Asks the user whether the changes of check marks may be lost, if there are any. Call it
    /// before another address book is opened.
    bool mayLoseMarks() const { return marks_.mayLoseMarks(); }

    /// Restores the marks from before the last deletion, which has just been undone, once the
    /// running load and its search are over; in groups that are the same as then.
    void restoreMarksBeforeDeletion() { marks_.keepMarksBeforeDeletion(); }

    /// Forgets all marks from before deletions: somebody could not be restored, so that the same
    /// deletion may be undone again.
    void forgetMarksBeforeDeletions() { marks_.forgetMarksBeforeDeletions(); }

    /// A job was started while none was running: disables the commands that would start another and
    /// hides the warnings. `name` is the job's thread.
    void jobsBegan(std::string_view name);

    /// A job's thread ended with an error; the engine no longer has any rows. `reason` is shown on
    /// the page in place of the table; empty when the user has acknowledged the error.
    void jobFailed(std::string_view name, std::string_view reason = {});

    /// The last job has ended: shows the rows or why there are none, counts the warnings, and
    /// enables the commands.
    void jobsEnded();

    RowStyle styleOfRow(std::size_t row) override;
    std::string wholeWarning(std::size_t row) override;
    std::string_view noteTitle() override;
    std::string_view leastText(std::string_view column) override;
    void selectedRowDidChange() override;
    void rowsEdited(std::span<const std::size_t> rows) override;
    RowRange rowsTogetherWith(std::size_t row) override;
    std::unique_ptr<RowFilter> rowFilter(std::string_view typed) override;
    std::optional<std::size_t>
    rowForTyping(std::string_view typed, std::size_t first,
                 const std::function<bool(std::size_t row)>& isShown) override;
    std::string countText(std::size_t found, std::size_t all) override;
    std::string accessibleCellText(std::string_view title,
                                   std::optional<std::string_view> shown) override;

    /// Reads the cards of the rows that the job has found or left, and remembers the job. The
    /// posting thread reads the cards and then waits for the main thread.
    void OnFinished(const Notification& notification);

    void OnReload(View* sender);
    /// Asks about doubtful deletions before the confirmation. People whom the user leaves out stay
    /// unchecked, even if the confirmation is then cancelled.
    void OnDelete(View* sender);
    void OnOpen(View* sender);
    void OnOpenFolder(View* sender);
    void OnFilter(View* sender);
    void OnNextLastCopy(View* sender);
    void OnNextEmptyFields(View* sender);
    /// Shows only the groups that need a look, or all rows again.
    void OnNeedsLook(View* sender);
    /// Shows everything that the address book noted while it was read.
    void OnNotes(View* sender);

private:
    /// How far the last job got.
    enum class LastJob { None, Loaded, Found, Deleted, LoadFailed, SearchFailed };

    Emptiness emptiness() const;
    void showRows();
    void showWarnings();
    void showCheckedPeople();
    void enableCommands();
    void jumpToNext(GroupWarning warning);
    void showOnlyLooks(bool showsOnlyLooks);
    /// The sentences about a row; `onlyHere` is the one about what only it holds.
    std::string warningOf(std::size_t row, std::string_view onlyHere) const;
    void marksChanged(std::span<const std::size_t> rows);

    ContactsController& contacts_;
    std::function<bool(OpenPanel::Kind)> openBook_;
    GroupWarnings warnings_;
    LastJob lastJob_ = LastJob::None;
    bool areJobsRunning_ = false;
    bool isBookOpen_ = true;
    bool showsOnlyLooks_ = false;

    TableView* tableContacts_;
    Button* btnLastCopies_;
    Button* btnEmptyFields_;
    Command* needsLook_;
    Button* btnAllRows_;
    TextField* txtTotal_;
    CardReview cards_;
    MarkCommands marks_;
    CheckedCount checkedCount_;
    EmptyPage emptyPage_;
    ReadingNotesButton notes_;
    /// The commands that start a job.
    std::vector<Command*> startCommands_;
    /// The commands that need rows.
    std::vector<Command*> rowCommands_;
};

}  // namespace dunmora
