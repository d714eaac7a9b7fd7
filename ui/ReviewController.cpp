#include "ui/ReviewController.h"

#include "base/JobThreads.h"
#include "base/NotificationCenter.h"
#include "engine/ContactRecord.h"
#include "engine/ContactsParser.h"
#include "platform/Alert.h"
#include "platform/Application.h"
#include "platform/Button.h"
#include "platform/Desktop.h"
#include "platform/InterfaceLoader.h"
#include "platform/Platform.h"
#include "platform/TextField.h"
#include "ui/ContactsController.h"

#include <string>
#include <utility>

namespace dunmora {

namespace {

constexpr std::string_view kLoss = "Every copy of this person is checked: none would be left.";
constexpr std::string_view kDoubt =
    "The fields compared are empty in these cards: they may be different people.";

/// "1 card was skipped", "2 cards were skipped".
std::string counted(std::size_t count, std::string_view one, std::string_view several)
{
    return std::to_string(count) + " " + std::string(count == 1 ? one : several);
}

/// In one sentence, without its full stop; empty when there is nothing to tell.
std::string summaryOf(const ReadingNotes& notes)
{
    if (notes.cardsSkipped > 0) {
        return counted(notes.cardsSkipped, "card was skipped", "cards were skipped");
    }
    if (!notes.remarks.empty()) {
        return counted(notes.remarks.size(), "remark on the last reading",
                       "remarks on the last reading");
    }
    return {};
}

std::string linesOf(const std::vector<std::string>& texts)
{
    std::string lines;
    for (const auto& text : texts) {
        lines += (lines.empty() ? "" : "\n") + text;
    }
    return lines;
}

}  // namespace

ReviewController::ReviewController(Interface& mainInterface, ContactsController& contacts,
                                   std::function<bool()> openBook)
    : contacts_(contacts),
      openBook_(std::move(openBook)),
      tableContacts_(&mainInterface.tableView("tableContacts")),
      btnLastCopies_(&mainInterface.button("btnLastCopies")),
      btnEmptyFields_(&mainInterface.button("btnEmptyFields")),
      btnNotes_(&mainInterface.button("btnNotes")),
      txtTotal_(&mainInterface.textField("txtTotal")),
      vwEmpty_(&mainInterface.view("vwEmpty")),
      txtEmptyTitle_(&mainInterface.textField("txtEmptyTitle")),
      txtEmptyHint_(&mainInterface.textField("txtEmptyHint")),
      btnEmptyOpen_(&mainInterface.button("btnEmptyOpen"))
{
    const auto connect = [&](std::string_view name, void (ReviewController::*operation)(View*)) {
        auto& command = mainInterface.command(name);
        command.setHandler([this, operation](View* sender) { (this->*operation)(sender); });
        return &command;
    };
    beginnings_ = {connect("OnReload", &ReviewController::OnReload),
                   connect("OnOpen", &ReviewController::OnOpen)};
    rowCommands_ = {connect("OnDelete", &ReviewController::OnDelete),
                    connect("OnCheckSelected", &ReviewController::OnCheckSelected),
                    connect("OnUncheckSelected", &ReviewController::OnUncheckSelected),
                    connect("OnKeepOneOfEach", &ReviewController::OnKeepOneOfEach),
                    connect("OnFilter", &ReviewController::OnFilter)};
    connect("OnNextLastCopy", &ReviewController::OnNextLastCopy);
    connect("OnNextEmptyFields", &ReviewController::OnNextEmptyFields);
    connect("OnNotes", &ReviewController::OnNotes);

    showRows();
    showWarnings();
    showNotes();
    enableCommands();
}

ReviewController::~ReviewController()
{
    NotificationCenter::defaultCenter().removeObserver(this, kMsgFinished);
}

void ReviewController::awakeFromNib()
{
    NotificationCenter::defaultCenter().addObserver(
        this, kMsgFinished, [this](const Notification& notification) { OnFinished(notification); });
}

void ReviewController::setBookIsOpen(bool isOpen)
{
    bookIsOpen_ = isOpen;
    if (!jobsRun_) {
        showRows();
    }
}

void ReviewController::jobsBegan(std::string_view name)
{
    jobsRun_ = true;
    lastJob_ = LastJob::None;
    warnings_.clear();
    showWarnings();
    enableCommands();
    // A deletion leaves what the table has drawn on the screen, and the notes with it.
    if (name == kThreadLoadContacts) {
        notes_ = {};
        showNotes();
        // What is found next is to be seen whole.
        tableContacts_->endFiltering();
        showEmptiness(Emptiness::Working);
    }
}

void ReviewController::jobFailed(std::string_view name)
{
    notes_ = {};
    showNotes();
    // Until the last job has ended: a failed deletion is followed by a load.
    showEmptiness(Emptiness::Working);
    if (name == kThreadLoadContacts) {
        lastJob_ = LastJob::LoadFailed;
    } else if (name == kThreadFindDuplicates) {
        lastJob_ = LastJob::SearchFailed;
    } else {
        lastJob_ = LastJob::None;
    }
}

void ReviewController::jobsEnded()
{
    jobsRun_ = false;
    showRows();
    warnings_.update(ContactsParser::parser());
    showWarnings();
    // A book that could not be read has nothing to say but what its failure said.
    const auto* const book = Platform::current().addressBook;
    notes_ = book == nullptr || lastJob_ == LastJob::LoadFailed ? ReadingNotes() : book->notes();
    showNotes();
    enableCommands();
    tableContacts_->setNeedsDisplay();
}

RowStyle ReviewController::styleOfRow(std::size_t row)
{
    RowStyle style;
    style.group = warnings_.groupOfRow(row).value_or(0);
    const auto loses = warnings_.hasWarning(row, GroupWarning::LosesEveryCopy);
    const auto doubtful = warnings_.hasWarning(row, GroupWarning::SharesOnlyEmptyFields);
    if (loses) {
        style.warning.sign = RowStyle::Warning::Sign::Loss;
        style.warning.text = kLoss;
    } else if (doubtful) {
        style.warning.sign = RowStyle::Warning::Sign::Doubt;
    }
    if (doubtful) {
        style.warning.text += loses ? " " : "";
        style.warning.text += kDoubt;
    }
    return style;
}

void ReviewController::rowsEdited(std::span<const std::size_t> rows)
{
    warnings_.rowsEdited(ContactsParser::parser(), rows);
    showWarnings();
    // The sign is on every row of a group, not on the edited ones alone.
    tableContacts_->setNeedsDisplay();
}

void ReviewController::OnFinished(const Notification& notification)
{
    const auto job = notification.text();
    Desktop::current().application.performOnMainThread([&] {
        if (job == kJobLoading) {
            lastJob_ = LastJob::Loaded;
        } else if (job == kJobFinding) {
            lastJob_ = LastJob::Found;
        } else if (job == kJobDeleting) {
            lastJob_ = LastJob::Deleted;
        }
    });
}

void ReviewController::OnReload(View* sender)
{
    contacts_.OnReload(sender);
}

void ReviewController::OnDelete(View* sender)
{
    tableContacts_->endFiltering();
    contacts_.OnDelete(sender);
}

void ReviewController::OnOpen(View* sender)
{
    if (openBook_()) {
        contacts_.OnReload(sender);
    }
}

void ReviewController::OnCheckSelected(View* /*sender*/)
{
    tableContacts_->editSelectedRows(kContactCheck, CheckState::On);
}

void ReviewController::OnUncheckSelected(View* /*sender*/)
{
    tableContacts_->editSelectedRows(kContactCheck, CheckState::Off);
}

void ReviewController::OnKeepOneOfEach(View* /*sender*/)
{
    const auto rows = warnings_.firstRowsThatLoseEveryCopy();
    for (const auto row : rows) {
        contacts_.setObjectValue(false, kContactCheck, static_cast<std::ptrdiff_t>(row));
    }
    rowsEdited(rows);
}

void ReviewController::OnFilter(View* /*sender*/)
{
    tableContacts_->beginFiltering();
}

void ReviewController::OnNextLastCopy(View* /*sender*/)
{
    jumpToNext(GroupWarning::LosesEveryCopy);
}

void ReviewController::OnNextEmptyFields(View* /*sender*/)
{
    jumpToNext(GroupWarning::SharesOnlyEmptyFields);
}

void ReviewController::OnNotes(View* /*sender*/)
{
    const auto summary = summaryOf(notes_);
    if (!summary.empty()) {
        Platform::current().alert.runModal({summary, linesOf(notes_.remarks), "OK", std::nullopt});
    }
}

ReviewController::Emptiness ReviewController::emptiness() const
{
    if (!bookIsOpen_) {
        return Emptiness::NoBook;
    }
    switch (lastJob_) {
    case LastJob::None:
        return Emptiness::NotSearched;
    case LastJob::LoadFailed:
        return Emptiness::Unreadable;
    case LastJob::SearchFailed:
        return Emptiness::Unfinished;
    case LastJob::Loaded:
    case LastJob::Found:
    case LastJob::Deleted:
        break;
    }
    if (lastJob_ == LastJob::Deleted) {
        return Emptiness::NoneLeft;
    }
    if (ContactsParser::parser().contacts().empty()) {
        return Emptiness::NoPeople;
    }
    // A load that no search followed: the dialog between them was cancelled.
    return lastJob_ == LastJob::Loaded ? Emptiness::Cancelled : Emptiness::NoDuplicates;
}

void ReviewController::showEmptiness(Emptiness emptiness)
{
    enum class Offer { Nothing, AnotherBook };
    const auto say = [&](std::string_view title, std::string_view hint, Offer offer) {
        txtEmptyTitle_->setStringValue(title);
        txtEmptyHint_->setStringValue(hint);
        btnEmptyOpen_->setHidden(offer == Offer::Nothing);
    };
    switch (emptiness) {
    case Emptiness::NotSearched:
        say("Nothing searched yet",
            "Choose Reload to read the address book and look for duplicates.", Offer::AnotherBook);
        break;
    case Emptiness::Working:
        say("Looking for duplicates…", "This takes a moment.", Offer::Nothing);
        break;
    case Emptiness::NoBook:
        say("No address book is open",
            "Open a vCard file or a folder of them, or drop one on this window.",
            Offer::AnotherBook);
        break;
    case Emptiness::NoPeople:
        say("Nobody is in this address book", "Open another one to look for duplicates.",
            Offer::AnotherBook);
        break;
    case Emptiness::NoDuplicates:
        say("No duplicates found", "Choose Reload to compare other fields.", Offer::AnotherBook);
        break;
    case Emptiness::NoneLeft:
        say("No duplicates left", "Choose Reload to search again, by the same fields or others.",
            Offer::AnotherBook);
        break;
    case Emptiness::Cancelled:
        say("The search was cancelled", "Choose Reload when you want to look for duplicates.",
            Offer::Nothing);
        break;
    case Emptiness::Unreadable:
        say("The address book could not be read",
            "Choose Reload to try again, or open another one.", Offer::AnotherBook);
        break;
    case Emptiness::Unfinished:
        say("The search could not be finished", "Choose Reload to try again.", Offer::Nothing);
        break;
    }
    const bool wasSearched = emptiness == Emptiness::NoPeople ||
                             emptiness == Emptiness::NoDuplicates ||
                             emptiness == Emptiness::NoneLeft;
    // Else it tells of an earlier search.
    txtTotal_->setHidden(!wasSearched);
    tableContacts_->setHidden(true);
    vwEmpty_->setHidden(false);
}

void ReviewController::showRows()
{
    if (contacts_.numberOfRows() == 0) {
        showEmptiness(emptiness());
        return;
    }
    vwEmpty_->setHidden(true);
    tableContacts_->setHidden(false);
    txtTotal_->setHidden(false);
}

void ReviewController::showWarnings()
{
    const auto show = [](Button& button, std::size_t count, const std::string& title) {
        if (count > 0) {
            button.setTitle(title);
        }
        button.setHidden(count == 0);
    };
    const auto losing = warnings_.peopleWhoLoseEveryCopy();
    show(*btnLastCopies_, losing,
         counted(losing, "person would lose every copy", "people would lose every copy"));
    const auto doubtful = warnings_.peopleWhoShareOnlyEmptyFields();
    show(*btnEmptyFields_, doubtful,
         counted(doubtful, "person shares only empty fields", "people share only empty fields"));
}

void ReviewController::showNotes()
{
    const auto summary = summaryOf(notes_);
    if (!summary.empty()) {
        btnNotes_->setTitle(summary);
    }
    btnNotes_->setHidden(summary.empty());
}

void ReviewController::enableCommands()
{
    for (auto* const command : beginnings_) {
        command->setEnabled(!jobsRun_);
    }
    const auto haveRows = !jobsRun_ && contacts_.numberOfRows() > 0;
    for (auto* const command : rowCommands_) {
        command->setEnabled(haveRows);
    }
}

void ReviewController::jumpToNext(GroupWarning warning)
{
    if (const auto row = warnings_.nextRow(warning, tableContacts_->selectedRow())) {
        tableContacts_->selectRow(*row);
    }
}

}  // namespace dunmora
