#include "review/GroupMarks.h"

#include "engine/ContactsParser.h"
#include "review/GroupWarnings.h"

namespace dunmora {

namespace {

void mark(ContactsParser& engine, std::size_t row, bool isChecked,
          std::vector<std::size_t>& changed)
{
    auto* const contact = engine.recordInRow(row);
    if (contact != nullptr && contact->isChecked() != isChecked) {
        contact->setObject(isChecked, kContactCheck);
        changed.push_back(row);
    }
}

RowRange rowsAround(const GroupWarnings& warnings, std::size_t row)
{
    const auto group = warnings.groupOfRow(row);
    return group ? warnings.rowsOfGroup(*group) : RowRange();
}

}  // namespace

std::vector<std::size_t> keepOnly(ContactsParser& engine, const GroupWarnings& warnings,
                                  std::size_t row)
{
    std::vector<std::size_t> changed;
    const auto rows = rowsAround(warnings, row);
    for (auto copy = rows.first; copy < rows.first + rows.size; ++copy) {
        mark(engine, copy, copy != row, changed);
    }
    return changed;
}

std::vector<std::size_t> keepAll(ContactsParser& engine, const GroupWarnings& warnings,
                                 std::size_t row)
{
    std::vector<std::size_t> changed;
    const auto rows = rowsAround(warnings, row);
    for (auto copy = rows.first; copy < rows.first + rows.size; ++copy) {
        mark(engine, copy, false, changed);
    }
    return changed;
}

std::vector<std::size_t> uncheckSharingOnlyEmptyFields(ContactsParser& engine,
                                                       const GroupWarnings& warnings)
{
    std::vector<std::size_t> changed;
    for (std::size_t row = 0; row < engine.duplicates().size(); ++row) {
        if (warnings.hasWarning(row, GroupWarning::SharesOnlyEmptyFields)) {
            mark(engine, row, false, changed);
        }
    }
    return changed;
}

}  // namespace dunmora
