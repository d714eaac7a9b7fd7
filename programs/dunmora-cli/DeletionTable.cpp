#include "programs/dunmora-cli/DeletionTable.h"

#include "engine/ContactsParser.h"
#include "programs/dunmora-cli/ContactTable.h"
#include "review/CheckedPeople.h"
#include "review/DuplicateGroups.h"
#include "review/UniqueProperties.h"

#include <algorithm>
#include <cstddef>

namespace dunmora {

namespace {

/// Appends the group as a block, unless nobody in it is checked.
void appendGroup(TablePeople& table, const DuplicateGroup& group, const ContactsParser& engine,
                 const UniqueProperties& properties)
{
    auto& people = table.people;
    const auto begin = static_cast<std::ptrdiff_t>(people.size());
    for (std::size_t row = group.firstRow; row < group.firstRow + group.uids.size(); ++row) {
        if (const auto* const record = engine.recordInRow(row)) {
            people.push_back({record, properties.has(row)});
        }
    }
    const auto checked =
        std::stable_partition(people.begin() + begin, people.end(), [](const TablePerson& person) {
            return !person.record->isChecked();
        });
    if (checked == people.end()) {
        people.erase(people.begin() + begin, people.end());
    } else {
        table.blockEnds.push_back(people.size());
    }
}

}  // namespace

void printDeletionTable(TextPieces& out, const ContactsParser& engine,
                        const UniqueProperties& properties, const CardSource* cards,
                        const TableStyle& style)
{
    TablePeople table;
    table.people.reserve(engine.duplicates().size());
    visitDuplicateGroups(engine, [&](const DuplicateGroup& group) {
        appendGroup(table, group, engine, properties);
    });
    const auto others = checkedWithoutDuplicates(engine);
    for (const auto& uid : others) {
        table.people.push_back({engine.contacts().find(uid)});
    }
    if (!others.empty()) {
        table.blockEnds.push_back(table.people.size());
    }
    printContactTable(out, table, cards, style);
}

}  // namespace dunmora
