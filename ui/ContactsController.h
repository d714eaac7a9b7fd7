#pragma once

#include "platform/TableView.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

class Interface;
class TextField;
class View;
struct Notification;

/// Fills the review table from the engine, toggles check marks, and implements the commands that
/// reload the address book and delete the checked people. It stores no data: a check mark is part
/// of the contact record.
///
/// Thread: the main thread, except `DeleteCheckedContacts`. Errors: none.
class ContactsController final : public TableViewDataSource {
public:
    /// Finds its outlets in the main interface, which must outlive the controller, and becomes the
    /// table's data source. `loadContacts` is the body of the loading thread.
    ContactsController(Interface& mainInterface, std::function<void()> loadContacts);
    ContactsController(const ContactsController&) = delete;
    ContactsController& operator=(const ContactsController&) = delete;

    /// Unsubscribes, and removes itself from the table.
    ~ContactsController() override;

    /// Subscribes to "msgReload" until the controller is destroyed.
    void awakeFromNib();

    std::span<const TableColumn> columns() override;
    std::size_t numberOfRows() override;
    std::optional<CellValue> objectValue(std::string_view column, std::ptrdiff_t row) override;

    /// Toggles the row's check mark and ignores the value: what counts is the record, not the cell.
    /// Ignores edits of other columns.
    void setObjectValue(const CellValue& value, std::string_view column,
                        std::ptrdiff_t row) override;

    /// Selection has no effect.
    void tableViewSelectionDidChange() override;

    /// Enables and reloads the table and updates the total. The posting thread waits until this has
    /// run on the main thread.
    void OnReloadContacts(const Notification& notification);

    /// Empties the table and starts a load, even while a job runs.
    void OnReload(View* sender);

    /// Asks for a confirmation and starts the deletion of everyone checked.
    void OnDelete(View* sender);

    /// Opens a new progress window (`openProgressWindow`).
    void showProgress();

    /// Thread body of the deletion. Thread: a worker. Errors: what the engine throws.
    void DeleteCheckedContacts(const std::vector<std::string>& uids);

private:
    TableView* tableContacts_;
    TextField* txtTotal_;
    std::function<void()> loadContacts_;
};

}  // namespace dunmora
