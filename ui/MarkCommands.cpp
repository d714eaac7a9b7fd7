#include "ui/MarkCommands.h"

#include "engine/ContactsParser.h"
#include "platform/Alert.h"
#include "platform/InterfaceLoader.h"
#include "platform/Platform.h"
#include "platform/TableView.h"
#include "platform/TextField.h"
#include "platform/View.h"
#include "review/CheckedPeople.h"
#include "review/GroupMarks.h"
#include "review/GroupWarnings.h"
#include "review/ReviewTexts.h"
#include "ui/GroupedNumber.h"
#include "ui/ReviewRows.h"

#include <string_view>
#include <utility>

namespace dunmora {

MarkCommands::MarkCommands(Interface& mainInterface, const GroupWarnings& groups,
                           KeptMarks::CardHash cardHash, MarksChanged marksChanged)
    : groups_(groups),
      cardHash_(std::move(cardHash)),
      marksChanged_(std::move(marksChanged)),
      tableContacts_(&mainInterface.tableView("tableContacts")),
      txtResult_(&mainInterface.textField("txtResult")),
      undo_(&mainInterface.command("OnUndoMarks")),
      redo_(&mainInterface.command("OnRedoMarks"))
{
    const auto connect = [&](std::string_view name, std::function<void()> command) {
        auto& connected = mainInterface.command(name);
        connected.setHandler(
            [this, command = std::move(command)](View* /*sender*/) { run(command); });
        return &connected;
    };
    const auto connectEdit = [&](std::string_view name, std::function<Rows()> edit) {
        return connect(name, [this, edit = std::move(edit)] { edited(edit()); });
    };
    auto& engine = ContactsParser::parser();
    connect("OnUndoMarks", [&] { changed(history_.undo(engine)); });
    connect("OnRedoMarks", [&] { changed(history_.redo(engine)); });
    commands_ = {
        connectEdit("OnRestoreProposal", [&] { return proposal_.restore(engine); }),
        connect("OnCheckSelected",
                [this] { tableContacts_->editSelectedRows(kContactCheck, CheckState::On); }),
        connect("OnUncheckSelected",
                [this] { tableContacts_->editSelectedRows(kContactCheck, CheckState::Off); }),
        connect("OnCheckShown",
                [this] { tableContacts_->editShownRows(kContactCheck, CheckState::On); }),
        connect("OnUncheckShown",
                [this] { tableContacts_->editShownRows(kContactCheck, CheckState::Off); }),
        connectEdit("OnKeepOneOfEach", [&] { return keepOneOfEach(engine, groups_); }),
        connectEdit("OnUncheckEmptyFields",
                    [&] { return uncheckSharingOnlyEmptyFields(engine, groups_); }),
        connectEdit("OnKeepOnly", [&] { return editGroup(keepOnly); }),
        connectEdit("OnKeepAll", [&] { return editGroup(keepAll); }),
    };
    const auto connectMove = [&](std::string_view name, Direction direction) {
        auto& command = mainInterface.command(name);
        command.setHandler([this, direction](View* /*sender*/) { moveToGroup(direction); });
        commands_.push_back(&command);
    };
    connectMove("OnNextGroup", Direction::Next);
    connectMove("OnPreviousGroup", Direction::Previous);
    enableCommands();
}

void MarkCommands::keepMarks()
{
    const auto& engine = ContactsParser::parser();
    if (!engine.duplicates().empty()) {
        kept_ = KeptMarks(engine, groups_, proposal_, cardHash_);
    }
}

void MarkCommands::keepMarksBeforeDeletion()
{
    if (!beforeDeletions_.empty()) {
        kept_ = std::move(beforeDeletions_.back());
        beforeDeletions_.pop_back();
    }
}

void MarkCommands::forgetMarks()
{
    kept_ = {};
    forgetMarksBeforeDeletions();
}

bool MarkCommands::mayLoseMarks() const
{
    return proposal_.changed() == 0 ||
           Platform::current().alert.runModal(
               lostMarksQuestion(proposal_.changed(), groupedNumber)) == Alert::kDefaultButton;
}

void MarkCommands::jobsBegan()
{
    areEnabled_ = false;
    showResult("");
    enableCommands();
}

void MarkCommands::jobsEnded(After after)
{
    const auto& engine = ContactsParser::parser();
    history_.clear();
    if (after == After::Search) {
        proposal_.searched(engine);
        restoreMarks();
    } else if (after == After::Deletion) {
        proposal_.deleted(engine);
        beforeDeletions_.push_back(std::exchange(kept_, {}));
    } else {
        proposal_.clear();
    }
    areEnabled_ = !engine.duplicates().empty();
    enableCommands();
}

void MarkCommands::edited(std::span<const std::size_t> rows)
{
    history_.add(rows);
    changed(rows);
}

void MarkCommands::run(const std::function<void()>& command)
{
    result_ = Result();
    command();
    showResult(markedText(result_->checked, result_->unchecked, groupedNumber));
    result_.reset();
}

void MarkCommands::restoreMarks()
{
    const auto kept = std::exchange(kept_, {});
    if (kept.count() > 0) {
        const auto restored = kept.restore(ContactsParser::parser(), groups_, cardHash_);
        changed(restored.rows);
        showResult(keptMarksText(restored.kept, restored.lost, groupedNumber));
    }
}

void MarkCommands::changed(std::span<const std::size_t> rows)
{
    const auto& engine = ContactsParser::parser();
    proposal_.rowsEdited(engine, rows);
    marksChanged_(rows);
    enableCommands();
    if (!result_) {
        // The table itself announces a mark that the user has set in it.
        showResult("");
        return;
    }
    for (const auto row : rows) {
        const auto* const record = recordInRow(static_cast<std::ptrdiff_t>(row));
        ++(record != nullptr && record->isChecked() ? result_->checked : result_->unchecked);
    }
}

MarkCommands::Rows MarkCommands::editGroup(GroupEdit edit)
{
    const auto row = tableContacts_->selectedRow();
    return row ? edit(ContactsParser::parser(), groups_, *row) : Rows();
}

void MarkCommands::moveToGroup(Direction direction)
{
    const auto count = groups_.groupCount();
    const auto row = tableContacts_->selectedRow();
    const auto own = row ? groups_.groupOfRow(*row) : std::nullopt;
    const bool isForwards = direction == Direction::Next;
    // Without a selected row the first step leads to the first group or to the last one.
    auto group = own.value_or(isForwards ? count - 1 : 0);
    for (std::size_t i = 0; i < count; ++i) {
        group = (group + (isForwards ? 1 : count - 1)) % count;
        const auto first = groups_.rowsOfGroup(group).first;
        if (tableContacts_->showsRow(first)) {
            tableContacts_->selectRow(first);
            return;
        }
    }
}

void MarkCommands::showResult(const std::string& text)
{
    if (text != shownResult_) {
        shownResult_ = text;
        txtResult_->setStringValue(text);
    }
}

void MarkCommands::enableCommands()
{
    for (auto* const command : commands_) {
        command->setEnabled(areEnabled_);
    }
    undo_->setEnabled(areEnabled_ && history_.canUndo());
    redo_->setEnabled(areEnabled_ && history_.canRedo());
}

}  // namespace dunmora
