#include "programs/dunmora-cli/ListCommand.h"

#include "engine/ContactsParser.h"
#include "engine/MatchKey.h"
#include "platform/AddressBook.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/CommandLine.h"
#include "programs/dunmora-cli/ContactCsv.h"
#include "programs/dunmora-cli/ContactJson.h"
#include "programs/dunmora-cli/ContactTable.h"
#include "programs/dunmora-cli/MatchFieldNames.h"
#include "programs/dunmora-cli/MemoryError.h"
#include "programs/dunmora-cli/Report.h"
#include "programs/dunmora-cli/ResultTexts.h"
#include "programs/dunmora-cli/ReviewSession.h"
#include "programs/dunmora-cli/StandardInput.h"
#include "programs/dunmora-cli/TextPieces.h"
#include "programs/dunmora-cli/UniqueWarning.h"
#include "review/DuplicateGroups.h"
#include "review/GroupWarnings.h"
#include "review/ReviewTexts.h"
#include "review/UniqueProperties.h"

#include <cstddef>
#include <string>
#include <vector>

namespace dunmora {

namespace {

void printTable(TextPieces& out, const ContactsParser& engine,
                const std::vector<DuplicateGroup>& groups, const UniqueProperties& properties,
                const CardSource* cards, const TableStyle& style)
{
    TablePeople table;
    table.people.reserve(engine.duplicates().size());
    table.blockEnds.reserve(groups.size());
    for (const auto& group : groups) {
        const auto end = group.firstRow + group.uids.size();
        for (auto row = group.firstRow; row < end; ++row) {
            table.people.push_back({engine.recordInRow(row), properties.has(row)});
        }
        table.blockEnds.push_back(table.people.size());
    }
    printContactTable(out, table, cards, style);
    out.text() += groups.empty() ? "" : "\n";
    out.text() += totalText(engine) + '\n';
}

void warn(const GroupWarnings& warnings, const UniqueProperties& properties,
          const BookRequest& request, const CliEnvironment& environment)
{
    const auto warnOf = [&](GroupWarning warning, std::size_t people) {
        if (people > 0) {
            report(environment, "warning: " + warningText(warning, people) + '.');
        }
    };
    warnOf(GroupWarning::LosesEveryCopy, warnings.peopleWhoLoseEveryCopy());
    warnOf(GroupWarning::SharesOnlyEmptyFields, warnings.peopleWhoShareOnlyEmptyFields());
    reportUnique(properties, request, environment);
}

}  // namespace

ExitCode listDuplicates(const ListRequest& request, const CliEnvironment& environment)
{
    ReviewSession session(request.book, environment, Changes::NotMade);
    const auto fields = chosenMatchFields();
    if (!insistOnMatchField(fields)) {
        return ExitCode::WrongUse;
    }
    const auto& engine = session.review();
    const auto groups = duplicateGroups(engine);
    UniqueProperties cards;
    namingBookInMemoryErrors(shownBookName(request.book.addressBook), [&] {
        cards.read(engine, session.cards(), UniqueProperties::Hashes::WhenAsked);
    });
    GroupWarnings warnings;
    if (!request.book.quiet || request.book.format == OutputFormat::Json) {
        warnings.update(engine);
    }
    const auto notes = session.addressBook().notes();
    const ReviewHead head{request.book.addressBook, namesOf(fields), notes.cardsSkipped,
                          notes.remarks};

    printPiecesAs(
        environment, request.book.format,
        {.table =
             [&](TextPieces& out) {
                 printTable(out, engine, groups, cards, session.cards(),
                            outputStyle(environment, request.book.width, fields));
             },
         .json =
             [&](TextPieces& out, JsonCharacters characters) {
                 printReviewJson(out, engine, groups, warnings, cards, head, characters);
             },
         .csv = [&](TextPieces& out,
                    CsvTexts texts) { printContactCsv(out, engine, groups, cards, texts); }});
    if (!request.book.quiet) {
        warn(warnings, cards, request.book, environment);
    }
    return request.failIfFound && !groups.empty() ? ExitCode::Found : ExitCode::Done;
}

}  // namespace dunmora
