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

std::string asTable(const ContactsParser& engine, const std::vector<DuplicateGroup>& groups,
                    const TableCards& cards, const TableStyle& style)
{
    std::vector<UidSpan> blocks;
    blocks.reserve(groups.size());
    for (const auto& group : groups) {
        blocks.push_back(group.uids);
    }
    auto table = contactTable(engine, blocks, cards, style);
    if (!table.empty()) {
        table += '\n';
    }
    return table + totalText(engine) + '\n';
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
    namingBookInMemoryErrors(shownBookName(request.book.addressBook),
                             [&] { cards.read(engine, session.cards()); });
    GroupWarnings warnings;
    warnings.update(engine);
    const auto notes = session.addressBook().notes();
    const ReviewHead head{request.book.addressBook, namesOf(fields), notes.cardsSkipped,
                          notes.remarks};

    printAs(environment, request.book.format,
            {.table =
                 [&] {
                     return asTable(engine, groups, {engine, cards, session.cards()},
                                    outputStyle(environment, request.book.width, fields));
                 },
             .json =
                 [&](JsonCharacters characters) {
                     return reviewJson(engine, groups, warnings, cards, head, characters);
                 },
             .csv = [&](CsvTexts texts) { return contactCsv(engine, groups, cards, texts); }});
    if (!request.book.quiet) {
        warn(warnings, cards, request.book, environment);
    }
    return request.failIfFound && !groups.empty() ? ExitCode::Found : ExitCode::Done;
}

}  // namespace dunmora
