#include "ui/CardReview.h"

#include "engine/ContactRecord.h"
#include "engine/ContactsParser.h"
#include "platform/Button.h"
#include "platform/InterfaceLoader.h"
#include "platform/Platform.h"
#include "platform/PlatformError.h"
#include "review/GroupWarnings.h"
#include "review/ReviewTexts.h"
#include "ui/GroupedNumber.h"
#include "ui/ReviewRows.h"

#include <algorithm>
#include <utility>

namespace dunmora {

namespace {

constexpr std::string_view kNoSelection = "Select a row to see everything that its card holds.";
constexpr std::string_view kUnreadable = "This card could not be read.";

/// With what the details of a row are compared.
std::string comparisonText(bool isChecked, bool losesEveryCopy, std::span<const CardLine> lines)
{
    if (losesEveryCopy) {
        return "No copy is kept.";
    }
    if (isChecked) {
        return "Compared with the kept copy:";
    }
    const bool isCompared = std::any_of(lines.begin(), lines.end(), [](const CardLine& line) {
        return line.verdict != CardVerdict::None;
    });
    return isCompared ? "Compared with the other kept copies:" : "";
}

}  // namespace

CardReview::CardReview(Interface& mainInterface, const GroupWarnings& groups)
    : groups_(groups),
      tableContacts_(&mainInterface.tableView("tableContacts")),
      btnOnlyHere_(&mainInterface.button("btnOnlyHere")),
      pane_(mainInterface, [this] { updateDetails(); })
{
    mainInterface.command("OnNextOnlyHere").setHandler([this](View* /*sender*/) { jumpToNext(); });
    clear(Details::Clear);
}

CardReview::Reading CardReview::read()
{
    Reading reading;
    try {
        reading.properties.read(ContactsParser::parser(), Platform::current().cardSource);
    } catch (const PlatformError& error) {
        // The search or the deletion before it has succeeded.
        reading.properties.clear();
        reading.failure = error.what();
    }
    return reading;
}

void CardReview::setReading(Reading reading)
{
    reading_ = std::move(reading);
    substitutes_.clear();
}

void CardReview::clear(Details details)
{
    setReading({});
    areRowsCurrent_ = false;
    btnOnlyHere_->setHidden(true);
    if (details == Details::Clear) {
        pane_.show(kNoSelection, {}, "");
    }
}

void CardReview::rowsEdited(std::span<const std::size_t> rows)
{
    reading_.properties.rowsEdited(ContactsParser::parser(), rows);
    update();
}

void CardReview::update()
{
    areRowsCurrent_ = true;
    const auto count = reading_.properties.count();
    if (count > 0) {
        btnOnlyHere_->setTitle(dunmora::uniqueText(count, groupedNumber));
    }
    btnOnlyHere_->setHidden(count == 0);
    updateDetails();
}

void CardReview::updateDetails()
{
    if (!pane_.isShown() || !areRowsCurrent_) {
        return;
    }
    const auto row = tableContacts_->selectedRow();
    const auto* const record = row ? recordInRow(static_cast<std::ptrdiff_t>(*row)) : nullptr;
    if (record == nullptr) {
        pane_.show(kNoSelection, {}, "");
        return;
    }
    const auto lines = reading_.properties.lines(*row);
    if (!lines) {
        pane_.show(accessibleText(*record,
                                  reading_.failure.empty() ? kUnreadable : reading_.failure,
                                  substituteName(*row)),
                   {}, "");
        return;
    }
    auto text = comparisonText(record->isChecked(),
                               groups_.hasWarning(*row, GroupWarning::LosesEveryCopy), *lines);
    if (reading_.properties.hasSeveralSources()) {
        if (const auto* const source = reading_.properties.source(*row)) {
            text = "From " + source->name + (text.empty() ? "." : ". " + text);
        }
    }
    pane_.show(accessibleText(*record, text, substituteName(*row)), *lines,
               record->isChecked() ? "the kept copy" : "another kept copy");
}

void CardReview::decorate(std::size_t row, RowStyle& style)
{
    // Until the groups are counted, a worse warning may follow.
    if (has(row) && groups_.groupOfRow(row) &&
        style.warning.sign == RowStyle::Warning::Sign::None) {
        style.warning.sign = RowStyle::Warning::Sign::OnlyHere;
    }
    if (const auto& name = substituteName(row); !name.empty()) {
        style.substitute = {kContactFirstName, name,
                            accessibleCellText(titleOfColumn(kContactFirstName), "") +
                                ", shown as " + name};
    }
    if (reading_.properties.hasSeveralSources()) {
        if (const auto* const source = reading_.properties.source(row)) {
            style.note = source->name;
        }
    }
}

std::string_view CardReview::noteTitle() const
{
    return reading_.properties.hasSeveralSources() ? "Book" : "";
}

const std::string& CardReview::substituteName(std::size_t row)
{
    const auto [found, isNew] = substitutes_.try_emplace(row);
    if (isNew) {
        found->second = reading_.properties.substituteName(row);
    }
    return found->second;
}

void CardReview::jumpToNext()
{
    if (const auto row = reading_.properties.nextRow(tableContacts_->selectedRow())) {
        tableContacts_->selectRow(*row);
    }
}

}  // namespace dunmora
