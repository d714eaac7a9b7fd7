#pragma once

#include "platform/TableView.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

class Interface;
class TextField;
class View;
struct Notification;

/// The review table's controller: fills the table from the engine, toggles check marks, and carries
/// the commands that reload everything and that delete the checked people. It keeps no data of its
/// own; the check mark lives in the contact record alone.
///
/// Thread: the main thread, but for `DeleteCheckedContacts`. Errors: none.
class ContactsController final : public TableViewDataSource {
public:
    /// Finds its outlets in the main interface, which must outlive the controller, and becomes the
    /// table's data source. `loadContacts` is the body of the loading thread.
    ContactsController(Interface& mainInterface, std::function<void()> loadContacts);
    ContactsController(const ContactsController&) = delete;
    ContactsController& operator=(const ContactsController&) = delete;

    /// Unsubscribes and leaves the table: the program keeps its controller until it ends, but where
    /// one ends before, neither may reach it any more.
    ~ContactsController() override;

    /// Subscribes to "msgReload" for the life of the process.
    void awakeFromNib();

    std::size_t numberOfRows() override;
    std::optional<CellValue> objectValue(std::string_view column, std::ptrdiff_t row) override;

    /// Toggles the row's check mark, whatever the value says: the record is the truth, not the
    /// cell. Other columns ignore the edit.
    void setObjectValue(const CellValue& value, std::string_view column,
                        std::ptrdiff_t row) override;

    /// Selection has no effect.
    void tableViewSelectionDidChange() override;

    /// Enables and reloads the table and writes the total line anew. The posting thread waits until
    /// it has run on the main thread.
    void OnReloadContacts(const Notification& notification);

    /// Empties the table and starts loading, whether or not a job runs.
    void OnReload(View* sender);

    /// Asks for a confirmation and starts the deletion of everyone checked.
    void OnDelete(View* sender);

    /// Opens a fresh progress window and hands it to `AppData`.
    void showProgress();

    /// Thread body of the deletion. Thread: a worker. Errors: what the engine throws.
    void DeleteCheckedContacts(const std::vector<std::string>& uids);

private:
    TableView* tableContacts_;
    TextField* txtTotal_;
    std::function<void()> loadContacts_;
};

}  // namespace dunmora
