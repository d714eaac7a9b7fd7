#pragma once

#include "platform/CardRestorer.h"
#include "ui/DeletionResult.h"

#include <cstddef>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace dunmora {

class Command;
class Interface;
class TableView;

/// Reports deletions, and puts the people of the last one back into the open address book, or saves
/// their cards. Only the user's commands write anything.
///
/// Thread: the main thread, except `RestoreDeleted`. Errors: none.
class UndoDelete final {
public:
    /// Starts the reload command after a restoration.
    using Reload = std::function<void(const Restoration& result)>;

    /// Finds its outlets and connects its commands in the main interface, which must outlive this.
    UndoDelete(Interface& mainInterface, Reload reload);
    ~UndoDelete() = default;
    UndoDelete(const UndoDelete&) = delete;
    UndoDelete& operator=(const UndoDelete&) = delete;

    /// The book at this path was opened: what was deleted from the one before is forgotten.
    /// `folder` is where the user starts to look for a place to save cards, as in `SavePanel`;
    /// `restorer` may be null.
    void bookOpened(std::filesystem::path book, std::filesystem::path folder,
                    std::shared_ptr<CardRestorer> restorer);

    /// Like the functions of `JobObserver`.
    void jobsBegan(std::string_view name);
    void jobFailed();
    void jobsEnded();

    /// Puts the people of the last deletion back, and reloads.
    void OnUndoDelete();
    /// Saves the cards of those people in a file that the user chooses outside the book.
    void OnSaveRemoved() const;

    /// Thread body of the restoration. Thread: a worker.
    /// Errors: PlatformError when nothing was changed.
    void RestoreDeleted();

private:
    std::size_t deletions() const;
    bool canUndo() const;
    void enableCommands(bool areJobsRunning);
    void restored(const Restoration& result);

    Reload reload_;
    std::filesystem::path book_;
    std::filesystem::path folder_;
    std::shared_ptr<CardRestorer> restorer_;
    DeletionResult result_;
    /// How many people, and how many saves to undo, there were when the running deletion began.
    std::optional<std::size_t> peopleBefore_;
    std::size_t deletionsBefore_ = 0;
    /// How many people the deletion that failed before the running reload has removed.
    std::optional<std::size_t> removedByFailure_;
    /// How many people the restoration before the running reload put back.
    std::optional<std::size_t> restored_;

    TableView* tableContacts_;
    Command* undoDelete_;
    Command* saveRemoved_;
};

}  // namespace dunmora
