#include "programs/dunmora/UndoDelete.h"

#include "adapters/posix/CardFileName.h"
#include "adapters/posix/NewFile.h"
#include "base/JobNotifications.h"
#include "base/JobThreads.h"
#include "base/NotificationCenter.h"
#include "engine/ContactsParser.h"
#include "platform/Alert.h"
#include "platform/Application.h"
#include "platform/Desktop.h"
#include "platform/InterfaceLoader.h"
#include "platform/Platform.h"
#include "platform/SavePanel.h"
#include "platform/TableView.h"
#include "programs/dunmora/FailureText.h"
#include "text/DisplayText.h"
#include "ui/ProgressWindowController.h"

#include <string>
#include <utility>
#include <vector>

namespace dunmora {

namespace {

constexpr auto kFileName = "Removed People.vcf";

std::string linesOf(const Restoration& result)
{
    std::string lines;
    for (const auto* const texts : {&result.failures, &result.remarks}) {
        for (const auto& text : *texts) {
            lines += text + "\n";
        }
    }
    return lines;
}

void showNotes(const Restoration& result)
{
    if (result.failures.empty() && result.remarks.empty()) {
        return;
    }
    AlertContent notes{"Everyone is in the address book again", linesOf(result), "OK",
                       std::nullopt};
    if (!result.failures.empty()) {
        notes.messageText = "Not everyone could be restored";
        notes.informativeText +=
            "\nChoose Edit > Save Removed People… to save their cards in a file.";
        notes.style = AlertStyle::Failure;
    }
    Platform::current().alert.runModal(notes);
}

}  // namespace

UndoDelete::UndoDelete(Interface& mainInterface, Reload reload)
    : reload_(std::move(reload)),
      result_(mainInterface),
      tableContacts_(&mainInterface.tableView("tableContacts")),
      undoDelete_(&mainInterface.command("OnUndoDelete")),
      saveRemoved_(&mainInterface.command("OnSaveRemoved"))
{
    undoDelete_->setHandler([this](View* /*sender*/) { OnUndoDelete(); });
    saveRemoved_->setHandler([this](View* /*sender*/) { OnSaveRemoved(); });
    enableCommands(false);
}

void UndoDelete::bookOpened(std::filesystem::path book, std::filesystem::path folder,
                            std::shared_ptr<CardRestorer> restorer)
{
    book_ = std::move(book);
    folder_ = std::move(folder);
    restorer_ = std::move(restorer);
    result_.hide();
    enableCommands(false);
}

void UndoDelete::jobsBegan(std::string_view name)
{
    restored_.reset();
    peopleBefore_.reset();
    removedByFailure_.reset();
    if (name == kThreadDeleteCheckedContacts) {
        peopleBefore_ = ContactsParser::parser().contacts().size();
        deletionsBefore_ = deletions();
    }
    result_.hide();
    enableCommands(true);
}

void UndoDelete::jobFailed()
{
    if (peopleBefore_ && deletions() > deletionsBefore_) {
        removedByFailure_ = restorer_->lastRemoved();
    }
    peopleBefore_.reset();
}

void UndoDelete::jobsEnded()
{
    enableCommands(false);
    if (peopleBefore_) {
        result_.showDeleted(*peopleBefore_ - ContactsParser::parser().contacts().size(), canUndo());
    } else if (removedByFailure_) {
        result_.showDeleted(*removedByFailure_, canUndo());
    } else if (restored_) {
        result_.showRestored(*restored_);
    }
}

void UndoDelete::OnUndoDelete()
{
    if (!canUndo()) {
        return;
    }
    tableContacts_->setEnabled(false);
    openProgressWindow(this);
    Desktop::current().application.detachNewThread(kThreadUndoDelete, [this] { RestoreDeleted(); });
}

void UndoDelete::OnSaveRemoved() const
{
    if (!canUndo()) {
        return;
    }
    try {
        const auto cards = restorer_->lastRemovedCards();
        const auto path = Desktop::current().savePanel.runModal(kFileName, folder_);
        if (!path) {
            return;
        }
        if (wouldJoinBook(*path, book_)) {
            showFailure(quotedPath(*path) +
                        " would become part of the address book. Choose another folder.");
            return;
        }
        writeNewFile(*path, {cards});
    } catch (...) {
        showFailure(failureText(std::current_exception(), ""));
    }
}

void UndoDelete::RestoreDeleted()
{
    NotificationCenter::defaultCenter().postText(kMsgShowMessage, this,
                                                 "Restoring deleted people...");
    const auto result = restorer_->restoreLast();
    Desktop::current().application.performOnMainThread([&] { restored(result); });
}

std::size_t UndoDelete::deletions() const
{
    return restorer_ != nullptr ? restorer_->deletions() : 0;
}

bool UndoDelete::canUndo() const
{
    return restorer_ != nullptr && restorer_->lastRemoved() > 0;
}

void UndoDelete::enableCommands(bool areJobsRunning)
{
    const bool isEnabled = !areJobsRunning && canUndo();
    undoDelete_->setEnabled(isEnabled);
    saveRemoved_->setEnabled(isEnabled);
}

void UndoDelete::restored(const Restoration& result)
{
    closeProgressWindow();
    showNotes(result);
    restored_ = result.restored;
    // The table asks for the number of rows only while it is enabled.
    ContactsParser::parser().reset();
    tableContacts_->setEnabled(true);
    reload_(result);
}

}  // namespace dunmora
