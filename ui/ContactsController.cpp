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
#include "review/CheckedPeople.h"
#include "review/ReviewTexts.h"
#include "ui/ProgressWindowController.h"
#include "ui/ReviewRows.h"

#include <utility>

namespace dunmora {

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

std::span<const TableColumn> ContactsController::columns()
{
    return reviewColumns();
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
        record->setChecked(!record->isChecked());
    }
}

void ContactsController::tableViewSelectionDidChange()
{
    // The selection has no effect.
    [[maybe_unused]] const auto row = tableContacts_->selectedRow();
}

void ContactsController::OnReloadContacts(const Notification& /*notification*/)
{
    tableContacts_->setEnabled(true);
    tableContacts_->reloadData();
    txtTotal_->setStringValue(totalText(ContactsParser::parser()));
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
    auto uids = checkedUids(ContactsParser::parser());
    if (uids.empty()) {
        Settings::MsgBox(kNobodyChecked);
        return;
    }

    const auto answer = Platform::current().alert.runModal(deletionQuestion());
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

// The thread that runs this has the controller as its target, although only the engine is used.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
void ContactsController::DeleteCheckedContacts(const std::vector<std::string>& uids)
{
    ContactsParser::parser().deleteContacts(uids);
}

}  // namespace dunmora
