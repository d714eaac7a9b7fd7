#pragma once

#include <string>
#include <string_view>

namespace dunmora {

class ContactsController;
class ReviewController;
class TableView;

/// What happens when a job has failed: the user is told, and the program is idle and usable again.
///
/// Thread: the main thread. Errors: none.
class JobFailureHandler final {
public:
    /// All must outlive it.
    JobFailureHandler(TableView& table, ContactsController& contacts, ReviewController& review)
        : table_(table), contacts_(contacts), review_(review)
    {
    }

    /// Shows the text, with the progress window still open until it is acknowledged; then takes
    /// away what the job has left: the window, the rows. After a failed deletion everything is
    /// loaded anew, because the engine has already forgotten people who are still there.
    void jobFailed(std::string_view name, const std::string& text);

private:
    TableView& table_;
    ContactsController& contacts_;
    ReviewController& review_;
};

}  // namespace dunmora
