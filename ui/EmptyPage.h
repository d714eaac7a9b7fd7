#pragma once

#include <string_view>

namespace dunmora {

class Button;
class Interface;
class TableView;
class TextField;
class View;

/// Why the review table has no rows.
enum class Emptiness {
    NotSearched,
    Working,
    NoBook,
    NoPeople,
    NoDuplicates,
    NoneLeft,
    Cancelled,
    LoadFailed,
    SearchFailed
};

/// The page that the main window shows in place of an empty table: why it is empty, and what to do
/// next.
///
/// Thread: the main thread. Errors: none.
class EmptyPage final {
public:
    /// Finds its outlets in the main interface, which must outlive the page.
    explicit EmptyPage(Interface& mainInterface);

    /// Shows the page instead of the table.
    void show(Emptiness emptiness);
    /// Shows the table again.
    void hide();

private:
    enum class Offer { Nothing, AnotherBook };

    void setTexts(std::string_view title, std::string_view hint, Offer offer);

    View* vwEmpty_;
    TextField* txtEmptyTitle_;
    TextField* txtEmptyHint_;
    Button* btnEmptyOpen_;
    View* vwReview_;
    TableView* tableContacts_;
};

}  // namespace dunmora
