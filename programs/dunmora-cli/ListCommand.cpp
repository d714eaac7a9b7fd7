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
#include "programs/dunmora-cli/Report.h"
#include "programs/dunmora-cli/ReviewSession.h"
#include "review/DuplicateGroups.h"
#include "text/Counted.h"

#include <cstddef>
#include <string>
#include <vector>

namespace dunmora {

namespace {

std::string asTable(const ContactsParser& engine, const std::vector<DuplicateGroup>& groups,
                    const CliEnvironment& environment)
{
    std::vector<UidSpan> blocks;
    blocks.reserve(groups.size());
    for (const auto& group : groups) {
        blocks.push_back(group.uids);
    }
    const bool colour = environment.outIsTerminal && environment.wantsColour;
    auto table = contactTable(engine, blocks, colour ? Colour::On : Colour::Off);
    if (!table.empty()) {
        table += '\n';
    }
    return table + totalLine(engine);
}

std::string formatted(const ContactsParser& engine, const std::vector<DuplicateGroup>& groups,
                      const ReviewHead& head, OutputFormat format,
                      const CliEnvironment& environment)
{
    switch (format) {
    case OutputFormat::Json:
        return reviewJson(engine, groups, head,
                          environment.outIsTerminal ? JsonCharacters::Ascii : JsonCharacters::Utf8);
    case OutputFormat::Csv:
        return contactCsv(engine, groups,
                          environment.outIsTerminal ? CsvTexts::Printable : CsvTexts::AsTheyAre);
    case OutputFormat::Table:
        break;
    }
    return asTable(engine, groups, environment);
}

void warn(const ContactsParser& engine, const std::vector<DuplicateGroup>& groups,
          const CliEnvironment& environment)
{
    std::size_t lost = 0;
    std::size_t blank = 0;
    for (const auto& group : groups) {
        lost += losesEveryCopy(engine, group) ? 1 : 0;
        blank += sharesOnlyEmptyFields(group.key) ? group.uids.size() : 0;
    }
    if (lost > 0) {
        report(environment, "warning: " + countOfPeople(lost) + " would lose every copy.");
    }
    if (blank > 0) {
        report(environment, "warning: " + countOfPeople(blank) + " share only empty fields.");
    }
}

}  // namespace

ExitCode listDuplicates(const ListRequest& request, const CliEnvironment& environment)
{
    ReviewSession session(request.book, environment, Changes::NotMade);
    if (!insistOnMatchField(chosenMatchFields())) {
        return ExitCode::WrongUse;
    }
    const auto& engine = session.review();
    const auto groups = duplicateGroups(engine);
    const ReviewHead head{request.book.addressBook, namesOf(chosenMatchFields()),
                          session.addressBook().notes().cardsSkipped};

    print(environment, formatted(engine, groups, head, request.book.format, environment));
    if (!request.book.quiet) {
        warn(engine, groups, environment);
    }
    return ExitCode::Done;
}

}  // namespace dunmora
