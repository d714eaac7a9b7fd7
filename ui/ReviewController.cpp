#include "ui/ReviewController.h"

#include "base/JobThreads.h"
#include "base/NotificationCenter.h"
#include "engine/ContactRecord.h"
#include "engine/ContactsParser.h"
#include "platform/AddressBook.h"
#include "platform/Application.h"
#include "platform/Button.h"
#include "platform/Desktop.h"
#include "platform/InterfaceLoader.h"
#include "platform/Platform.h"
#include "platform/TextField.h"
#include "review/DeletionDoubts.h"
#include "review/ReviewTexts.h"
#include "ui/ContactsController.h"
#include "ui/DeletionGuard.h"
#include "ui/GroupedNumber.h"
#include "ui/LookFilter.h"
#include "ui/ReviewRows.h"

#include <utility>

namespace dunmora {

ReviewController::ReviewController(Interface& mainInterface, ContactsController& contacts,
                                   std::function<bool(OpenPanel::Kind)> openBook)
    : contacts_(contacts),
      openBook_(std::move(openBook)),
      tableContacts_(&mainInterface.tableView("tableContacts")),
      btnLastCopies_(&mainInterface.button("btnLastCopies")),
      btnEmptyFields_(&mainInterface.button("btnEmptyFields")),
      needsLook_(&mainInterface.command("OnNeedsLook")),
      btnAllRows_(&mainInterface.button("btnAllRows")),
      txtTotal_(&mainInterface.textField("txtTotal")),
      cards_(mainInterface, warnings_),
      marks_(
          mainInterface, warnings_,
          [this](std::size_t row) { return cards_.properties().cardHash(row); },
          [this](std::span<const std::size_t> rows) { marksChanged(rows); }),
      checkedCount_(mainInterface),
      emptyPage_(mainInterface),
      notes_(mainInterface)
{
    const auto connect = [&](std::string_view name, void (ReviewController::*operation)(View*)) {
        auto& command = mainInterface.command(name);
        command.setHandler([this, operation](View* sender) { (this->*operation)(sender); });
        return &command;
    };
    startCommands_ = {connect("OnReload", &ReviewController::OnReload),
                      connect("OnMatchFields", &ReviewController::OnReload),
                      connect("OnOpen", &ReviewController::OnOpen),
                      connect("OnOpenFolder", &ReviewController::OnOpenFolder)};
    rowCommands_ = {connect("OnDelete", &ReviewController::OnDelete),
                    connect("OnFilter", &ReviewController::OnFilter)};
    connect("OnNextLastCopy", &ReviewController::OnNextLastCopy);
    connect("OnNextEmptyFields", &ReviewController::OnNextEmptyFields);
    connect("OnNeedsLook", &ReviewController::OnNeedsLook);
    connect("OnNotes", &ReviewController::OnNotes);
    showOnlyLooks(false);

    showRows();
    showWarnings();
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

void ReviewController::setBookIsOpen(bool isOpen, std::string_view reason)
{
    isBookOpen_ = isOpen;
    emptyPage_.setReason(reason);
    // What is known of its rows belongs to the previous book.
    cards_.clear(CardReview::Details::Clear);
    marks_.forgetMarks();
    txtTotal_->setStringValue("");
    showRows();
}

void ReviewController::jobsBegan(std::string_view name)
{
    areJobsRunning_ = true;
    lastJob_ = LastJob::None;
    if (name != kThreadLoadContacts) {
        // A load may follow, even if the job fails.
        marks_.keepMarks();
    }
    marks_.jobsBegan();
    warnings_.clear();
    // A deletion leaves the rows, their details and the notes on the screen.
    cards_.clear(name == kThreadLoadContacts ? CardReview::Details::Clear
                                             : CardReview::Details::Keep);
    showWarnings();
    enableCommands();
    if (name == kThreadLoadContacts) {
        notes_.setNotes({});
        tableContacts_->endFiltering();
        checkedCount_.hide();
        emptyPage_.show(Emptiness::Working);
    }
}

void ReviewController::jobFailed(std::string_view name, std::string_view reason)
{
    notes_.setNotes({});
    // Why none is open stays true.
    if (isBookOpen_) {
        emptyPage_.setReason(reason);
    }
    // The reason is shown once all jobs have ended: a load follows a failed deletion.
    emptyPage_.show(Emptiness::Working);
    if (name == kThreadLoadContacts) {
        lastJob_ = LastJob::LoadFailed;
    } else if (name == kThreadFindDuplicates) {
        lastJob_ = LastJob::SearchFailed;
    } else {
        lastJob_ = LastJob::None;
    }
    if (name == kThreadDeleteCheckedContacts) {
        // It may have removed people, so that it may be the deletion that is undone next.
        marks_.forgetMarksBeforeDeletions();
    }
}

void ReviewController::jobsEnded()
{
    areJobsRunning_ = false;
    showRows();
    warnings_.update(ContactsParser::parser());
    marks_.jobsEnded(lastJob_ == LastJob::Found     ? MarkCommands::After::Search
                     : lastJob_ == LastJob::Deleted ? MarkCommands::After::Deletion
                                                    : MarkCommands::After::Nothing);
    showWarnings();
    cards_.update();
    showCheckedPeople();
    if (showsOnlyLooks_) {
        tableContacts_->refilter();
    }
    if (lastJob_ == LastJob::Deleted) {
        // It was left open for a user who cancels the deletion.
        tableContacts_->endFiltering();
    }
    const auto* const book = Platform::current().addressBook;
    // Notes on a book that could not be read would be those of an earlier reading.
    notes_.setNotes(book == nullptr || lastJob_ == LastJob::LoadFailed ? ReadingNotes()
                                                                       : book->notes());
    enableCommands();
    tableContacts_->setNeedsDisplay();
}

RowStyle ReviewController::styleOfRow(std::size_t row)
{
    RowStyle style;
    style.group = warnings_.groupOfRow(row).value_or(0);
    if (warnings_.hasWarning(row, GroupWarning::LosesEveryCopy)) {
        style.warning.sign = RowStyle::Warning::Sign::Loss;
    } else if (warnings_.hasWarning(row, GroupWarning::SharesOnlyEmptyFields)) {
        style.warning.sign = RowStyle::Warning::Sign::Doubt;
    }
    cards_.decorate(row, style);
    style.warning.text = warningOf(row, cards_.has(row) ? kOnlyHere : std::string_view());
    if (const auto* const record = recordInRow(static_cast<std::ptrdiff_t>(row))) {
        style.accessibleText = accessibleText(*record, style.warning.text, style.substitute.text,
                                              copyText(row, rowsTogetherWith(row)));
    }
    return style;
}

std::string ReviewController::wholeWarning(std::size_t row)
{
    return warningOf(row, cards_.uniqueText(row));
}

std::string_view ReviewController::noteTitle()
{
    return cards_.noteTitle();
}

std::string_view ReviewController::leastText(std::string_view column)
{
    return dunmora::leastText(column);
}

void ReviewController::selectedRowDidChange()
{
    cards_.updateDetails();
}

void ReviewController::rowsEdited(std::span<const std::size_t> rows)
{
    // The job uses the rows, and everything about them is new once it has ended.
    if (!areJobsRunning_) {
        marks_.edited(rows);
    }
}

RowRange ReviewController::rowsTogetherWith(std::size_t row)
{
    const auto group = warnings_.groupOfRow(row);
    return group ? warnings_.rowsOfGroup(*group) : RowRange{row, 1};
}

std::unique_ptr<RowFilter> ReviewController::rowFilter(std::string_view typed)
{
    auto filter = reviewFilter(typed);
    if (!showsOnlyLooks_) {
        return filter;
    }
    return std::make_unique<LookFilter>(
        warnings_, contacts_.numberOfRows(), [this](std::size_t row) { return cards_.has(row); },
        std::move(filter));
}

std::optional<std::size_t>
ReviewController::rowForTyping(std::string_view typed, std::size_t first,
                               const std::function<bool(std::size_t row)>& isShown)
{
    return dunmora::rowForTyping(typed, first, isShown);
}

std::string ReviewController::countText(std::size_t found, std::size_t all)
{
    return dunmora::countText(found, all);
}

std::string ReviewController::accessibleCellText(std::string_view title,
                                                 std::optional<std::string_view> shown)
{
    return dunmora::accessibleCellText(title, shown);
}

void ReviewController::OnFinished(const Notification& notification)
{
    const auto job = notification.text();
    CardReview::Reading reading;
    if (job == kJobFinding || job == kJobDeleting) {
        reading = CardReview::read();
    }
    Desktop::current().application.performOnMainThread([&] {
        if (job == kJobLoading) {
            lastJob_ = LastJob::Loaded;
        } else if (job == kJobFinding) {
            lastJob_ = LastJob::Found;
        } else if (job == kJobDeleting) {
            lastJob_ = LastJob::Deleted;
        }
        cards_.setReading(std::move(reading));
    });
}

void ReviewController::OnReload(View* sender)
{
    marks_.keepMarks();
    contacts_.OnReload(sender);
}

void ReviewController::OnDelete(View* sender)
{
    auto& engine = ContactsParser::parser();
    switch (decideOnDeletion(engine, warnings_)) {
    case DeletionDecision::Cancel:
        return;
    case DeletionDecision::LeaveOut:
        rowsEdited(leaveDoubtsOut(engine, warnings_));
        break;
    case DeletionDecision::Delete:
        break;
    }
    contacts_.OnDelete(sender);
}

void ReviewController::OnOpen(View* sender)
{
    if (openBook_(OpenPanel::Kind::File)) {
        contacts_.OnReload(sender);
    }
}

void ReviewController::OnOpenFolder(View* sender)
{
    if (openBook_(OpenPanel::Kind::Folder)) {
        contacts_.OnReload(sender);
    }
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

void ReviewController::OnNeedsLook(View* /*sender*/)
{
    showOnlyLooks(!showsOnlyLooks_);
    tableContacts_->refilter();
}

void ReviewController::OnNotes(View* /*sender*/)
{
    notes_.showAlert();
}

Emptiness ReviewController::emptiness() const
{
    if (!isBookOpen_) {
        return Emptiness::NoBook;
    }
    switch (lastJob_) {
    case LastJob::None:
        return Emptiness::NotSearched;
    case LastJob::LoadFailed:
        return Emptiness::LoadFailed;
    case LastJob::SearchFailed:
        return Emptiness::SearchFailed;
    case LastJob::Deleted:
        return Emptiness::NoneLeft;
    case LastJob::Loaded:
    case LastJob::Found:
        break;
    }
    if (ContactsParser::parser().contacts().empty()) {
        return Emptiness::NoPeople;
    }
    // No search followed the load: the user cancelled the dialog between them.
    return lastJob_ == LastJob::Loaded ? Emptiness::Cancelled : Emptiness::NoDuplicates;
}

void ReviewController::showRows()
{
    if (contacts_.numberOfRows() == 0) {
        emptyPage_.show(emptiness());
    } else {
        emptyPage_.hide();
    }
}

void ReviewController::showWarnings()
{
    const auto show = [](Button& button, GroupWarning warning, std::size_t people) {
        if (people > 0) {
            button.setTitle(warningText(warning, people, groupedNumber));
        }
        button.setHidden(people == 0);
    };
    show(*btnLastCopies_, GroupWarning::LosesEveryCopy, warnings_.peopleWhoLoseEveryCopy());
    show(*btnEmptyFields_, GroupWarning::SharesOnlyEmptyFields,
         warnings_.peopleWhoShareOnlyEmptyFields());
}

void ReviewController::showCheckedPeople()
{
    if (areJobsRunning_) {
        return;
    }
    if (contacts_.numberOfRows() > 0) {
        checkedCount_.show(warnings_.checkedPeople());
    } else {
        checkedCount_.hide();
    }
}

void ReviewController::enableCommands()
{
    for (auto* const command : startCommands_) {
        command->setEnabled(!areJobsRunning_);
    }
    needsLook_->setEnabled(!areJobsRunning_);
    const auto haveRows = !areJobsRunning_ && contacts_.numberOfRows() > 0;
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

void ReviewController::showOnlyLooks(bool showsOnlyLooks)
{
    showsOnlyLooks_ = showsOnlyLooks;
    needsLook_->setChecked(showsOnlyLooks);
    btnAllRows_->setHidden(!showsOnlyLooks);
}

std::string ReviewController::warningOf(std::size_t row, std::string_view onlyHere) const
{
    std::string text;
    const auto add = [&text](std::string_view sentence) {
        text += text.empty() || sentence.empty() ? "" : " ";
        text += sentence;
    };
    const bool loses = warnings_.hasWarning(row, GroupWarning::LosesEveryCopy);
    if (loses) {
        add(rowText(GroupWarning::LosesEveryCopy));
    }
    if (warnings_.hasWarning(row, GroupWarning::SharesOnlyEmptyFields)) {
        add(rowText(GroupWarning::SharesOnlyEmptyFields));
    }
    if (!loses) {
        // When no copy is left, everything is only here.
        add(onlyHere);
    }
    return text;
}

void ReviewController::marksChanged(std::span<const std::size_t> rows)
{
    warnings_.rowsEdited(ContactsParser::parser(), rows);
    showWarnings();
    cards_.rowsEdited(rows);
    showCheckedPeople();
    // An edit changes the sign of every row in its group.
    tableContacts_->setNeedsDisplay();
}

}  // namespace dunmora
