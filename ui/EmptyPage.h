#pragma once

#include <string>
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

    /// Sets what the page shows in front of its advice: why there is no book, or why it could not
    /// be read. Empty for nothing.
    void setReason(std::string_view reason);

    /// Shows the page instead of the table. An empty book is called by its names, if it has any.
    void show(Emptiness emptiness);
    /// Shows the table again.
    void hide();

private:
    enum class Offer { Nothing, AnotherBook };

    void setTexts(std::string_view title, std::string_view hint, Offer offer);
    std::string afterReason(std::string_view advice) const;

    std::string reason_;
    View* vwEmpty_;
    TextField* txtEmptyTitle_;
    TextField* txtEmptyHint_;
    Button* btnEmptyOpen_;
    View* vwReview_;
    TableView* tableContacts_;
};

}  // namespace dunmora
