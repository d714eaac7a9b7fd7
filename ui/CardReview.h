#pragma once

#include "platform/TableView.h"
#include "review/UniqueProperties.h"
#include "ui/DetailsPane.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

namespace dunmora {

class Button;
class GroupWarnings;
class Interface;
class TableView;

/// What the review shows of the people's whole cards: the sign of a copy that holds something
/// unique, how many there are, the details of the selected copy, the names of people without one,
/// and where they are from.
///
/// Thread: the main thread while no job runs, unless stated otherwise. Errors: none.
class CardReview final {
public:
    /// Finds its outlets and connects its commands in the main interface. Both must outlive this.
    CardReview(Interface& mainInterface, const GroupWarnings& groups);
    ~CardReview() = default;
    CardReview(const CardReview&) = delete;
    CardReview& operator=(const CardReview&) = delete;

    /// What was read of all rows' cards.
    struct Reading {
        UniqueProperties properties;
        /// Why the cards could not be read; empty when they were.
        std::string failure;
    };
    /// Reads the cards of all rows, which may take a second.
    /// Thread: the worker whose job has changed the rows, before it ends.
    static Reading read();
    /// Shows what was read. Thread: the main thread, also during a job.
    void setReading(Reading reading);

    /// Forgets everything about the rows, such as before a job changes them; until the next
    /// `update` the engine is not used. `Keep` leaves the details on the screen.
    enum class Details { Keep, Clear };
    void clear(Details details);

    /// Marks have been changed.
    void rowsEdited(std::span<const std::size_t> rows);
    /// Shows the count and the details again, once the groups are up to date.
    void update();
    /// Shows the details of the selected row, unless the rows were cleared.
    void updateDetails();

    bool has(std::size_t row) const { return reading_.properties.has(row); }
    const UniqueProperties& properties() const { return reading_.properties; }
    /// Adds the sign, the substitute name and the note to the row's style.
    void decorate(std::size_t row, RowStyle& style);
    /// What is unique about the row, as a sentence; empty when nothing is.
    std::string uniqueText(std::size_t row) const { return reading_.properties.text(row); }
    /// As `TableViewDelegate::noteTitle`.
    std::string_view noteTitle() const;
    /// What to call the person in a row without a name; empty for a row with one.
    const std::string& substituteName(std::size_t row);

private:
    void jumpToNext();

    const GroupWarnings& groups_;
    TableView* tableContacts_;
    Button* btnOnlyHere_;
    Reading reading_;
    /// Whether no job has changed the rows since `update`.
    bool areRowsCurrent_ = false;
    /// By row: a table asks for a name whenever it draws it.
    std::unordered_map<std::size_t, std::string> substitutes_;
    DetailsPane pane_;
};

}  // namespace dunmora
