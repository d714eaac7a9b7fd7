#include "ui/ContactsController.h"

#include "base/JobThreads.h"
#include "base/NotificationCenter.h"
#include "base/Settings.h"
#include "engine/ContactsParser.h"
#include "platform/Alert.h"
#include "platform/Application.h"
#include "platform/Desktop.h"
#include "platform/InterfaceLoader.h"
#include "platform/Platform.h"
#include "platform/TextField.h"
#include "ui/ProgressWindowController.h"

#include <utility>

namespace dunmora {

namespace {

/// The record in a row of the review, if any.
ContactRecord* recordInRow(std::ptrdiff_t row)
{
    auto& engine = ContactsParser::parser();
    const auto& uids = engine.duplicates();
    // As an unsigned number a row before the first is one far behind the last.
    const auto index = static_cast<std::size_t>(row);
    return index < uids.size() ? engine.contacts().find(uids[index]) : nullptr;
}

}  // namespace

ContactsController::ContactsController(Interface& mainInterface, std::function<void()> loadContacts)
    : tableContacts_(&mainInterface.tableView("tableContacts")),
      txtTotal_(&mainInterface.textField("txtTotal")),
      loadContacts_(std::move(loadContacts))
{
    tableContacts_->setDataSource(this, nullptr);
}

ContactsController::~ContactsController()
{
    NotificationCenter::defaultCenter().removeObserver(this, kMsgReload);
    tableContacts_->setDataSource(nullptr, nullptr);
}

void ContactsController::awakeFromNib()
{
    NotificationCenter::defaultCenter().addObserver(
        this, kMsgReload, [this](const Notification& notification) {
            Desktop::current().application.performOnMainThread(
                [&] { OnReloadContacts(notification); });
        });
}

std::size_t ContactsController::numberOfRows()
{
    return ContactsParser::parser().duplicates().size();
}

std::optional<CellValue> ContactsController::objectValue(std::string_view column,
                                                         std::ptrdiff_t row)
{
    const auto* const record = recordInRow(row);
    return record != nullptr ? record->objectForKey(column) : std::nullopt;
}

void ContactsController::setObjectValue(const CellValue& /*value*/, std::string_view column,
                                        std::ptrdiff_t row)
{
    if (column != kContactCheck) {
        return;
    }
    if (auto* const record = recordInRow(row)) {
        record->setObject(!record->isChecked(), kContactCheck);
    }
}

void ContactsController::tableViewSelectionDidChange()
{
    // Nothing hangs on the selection; whoever wants to follow it begins here.
    [[maybe_unused]] const auto row = tableContacts_->selectedRow();
}

void ContactsController::OnReloadContacts(const Notification& /*notification*/)
{
    tableContacts_->setEnabled(true);
    tableContacts_->reloadData();
    const auto& engine = ContactsParser::parser();
    txtTotal_->setStringValue(std::to_string(engine.duplicates().size()) + " duplicates of " +
                              std::to_string(engine.contacts().size()));
}

void ContactsController::OnReload(View* /*sender*/)
{
    ContactsParser::parser().reset();
    tableContacts_->reloadData();
    showProgress();
    Desktop::current().application.detachNewThread(kThreadLoadContacts, loadContacts_);
}

void ContactsController::OnDelete(View* /*sender*/)
{
    std::vector<std::string> uids;
    for (const auto& contact : ContactsParser::parser().contacts()) {
        if (contact.value.isChecked()) {
            uids.emplace_back(contact.value.text(kContactUid));
        }
    }
    if (uids.empty()) {
        Settings::MsgBox("No contact checked to be deleted!");
        return;
    }

    const auto answer = Platform::current().alert.runModal(
        {"Confirm to delete",
         "The checked contacts will be deleted from Address Book. \r\n"
         "Do you really want to continue?",
         "Okay", "Cancel"});
    if (answer == Alert::kAlternateButton) {
        return;
    }

    tableContacts_->setEnabled(false);
    showProgress();
    Desktop::current().application.detachNewThread(
        kThreadDeleteCheckedContacts,
        [this, uids = std::move(uids)] { DeleteCheckedContacts(uids); });
}

void ContactsController::showProgress()
{
    openProgressWindow(this);
}

// The body of a thread that the delete command starts with this controller as its target; that the
// engine alone does the work is its own affair.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
void ContactsController::DeleteCheckedContacts(const std::vector<std::string>& uids)
{
    ContactsParser::parser().deleteContacts(uids);
}

}  // namespace dunmora
