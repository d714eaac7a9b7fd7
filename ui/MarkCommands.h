#pragma once

#include "review/KeptMarks.h"
#include "review/MarkHistory.h"
#include "review/ProposedMarks.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace dunmora {

class Command;
class ContactsParser;
class GroupWarnings;
class Interface;
class TableView;
class TextField;

/// The commands that change check marks, their undo and redo, and the steps from group to group. It
/// also keeps the user's marks while the address book is read again. The result of a command is
/// shown at the foot of the window, where assistive technology reads it.
///
/// Thread: the main thread. It uses the engine only while no job runs. Errors: none.
class MarkCommands final {
public:
    using Rows = std::vector<std::size_t>;
    /// Is called with the rows whose marks have changed.
    using MarksChanged = std::function<void(std::span<const std::size_t> rows)>;

    /// Finds its outlets and connects its commands in the main interface. All must outlive this.
    MarkCommands(Interface& mainInterface, const GroupWarnings& groups,
                 KeptMarks::CardHash cardHash, MarksChanged marksChanged);
    ~MarkCommands() = default;
    MarkCommands(const MarkCommands&) = delete;
    MarkCommands& operator=(const MarkCommands&) = delete;

    /// Remembers the marks that the user has set, unless there are no rows. To be called before the
    /// rows are replaced or a deletion changes them; `groups` and the hashes must be up to date.
    void keepMarks();
    /// Remembers those that the user had set before the last deletion instead, because it is being
    /// undone. The deletion before becomes the last one.
    void keepMarksBeforeDeletion();
    /// Forgets those before all deletions: it is not known any more which one is the last.
    void forgetMarksBeforeDeletions() { beforeDeletions_.clear(); }
    /// Forgets all remembered marks: another book will be read.
    void forgetMarks();

    /// Asks whether the user's changes of the marks may be lost, if there are any.
    bool mayLoseMarks() const;

    /// A job begins: the commands are disabled.
    void jobsBegan();

    /// What the rows are the result of, now that no job runs any more.
    enum class After { Search, Deletion, Nothing };
    /// Begins an empty history, restores the remembered marks after a search, and enables the
    /// commands if there are rows. `groups` and the hashes must be up to date.
    void jobsEnded(After after);

    /// Marks have been changed in one step, which can be undone: calls `marksChanged`.
    void edited(std::span<const std::size_t> rows);

private:
    using GroupEdit = Rows (*)(ContactsParser& engine, const GroupWarnings& groups,
                               std::size_t row);

    /// Runs a command and shows what it has changed.
    void run(const std::function<void()>& command);
    void restoreMarks();
    /// Marks have changed, whether by a new step or by undo and redo.
    void changed(std::span<const std::size_t> rows);
    /// Edits the group of the selected row.
    Rows editGroup(GroupEdit edit);
    enum class Direction { Next, Previous };
    void moveToGroup(Direction direction);
    void showResult(const std::string& text);
    void enableCommands();

    const GroupWarnings& groups_;
    KeptMarks::CardHash cardHash_;
    MarksChanged marksChanged_;
    MarkHistory history_;
    ProposedMarks proposal_;
    KeptMarks kept_;
    std::vector<KeptMarks> beforeDeletions_;
    bool areEnabled_ = false;
    /// How many marks the running command has changed.
    struct Result {
        std::size_t checked = 0;
        std::size_t unchecked = 0;
    };
    std::optional<Result> result_;
    std::string shownResult_;

    TableView* tableContacts_;
    TextField* txtResult_;
    std::vector<Command*> commands_;
    Command* undo_;
    Command* redo_;
};

}  // namespace dunmora
