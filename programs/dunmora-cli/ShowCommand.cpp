#include "programs/dunmora-cli/ShowCommand.h"

#include "platform/AddressBook.h"
#include "platform/CardSource.h"
#include "programs/dunmora-cli/CardText.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/CommandLine.h"
#include "programs/dunmora-cli/Report.h"
#include "programs/dunmora-cli/ResultTexts.h"
#include "programs/dunmora-cli/StandardInput.h"
#include "text/DisplayText.h"

#include <algorithm>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace dunmora {

namespace {

/// Reads the address book and returns the cards of these people.
std::vector<ShownCard> readCards(const BookRequest& request, std::span<const std::string> uids,
                                 const CliEnvironment& environment)
{
    const auto book = openForReading(request, environment);
    const auto people = book.addressBook->readPeople();
    if (!request.quiet) {
        for (const auto& remark : book.addressBook->notes().remarks) {
            report(environment, "note: " + remark);
        }
    }
    if (book.cardSource == nullptr) {
        throw CommandError(ExitCode::Failed, "This address book has no cards to show.");
    }
    std::vector<ShownCard> cards;
    for (const auto& uid : uids) {
        auto card = book.cardSource->card(uid);
        if (!card) {
            const bool isKnown =
                std::any_of(people.begin(), people.end(),
                            [&](const Person& person) { return person.uid == uid; });
            throw isKnown
                ? CommandError(ExitCode::Failed,
                               "The card of " + quotedText(uid) + " cannot be read.")
                : CommandError(ExitCode::WrongUse, "Nobody has the uid " + quotedText(uid) + ".");
        }
        cards.push_back({uid, *std::move(card)});
    }
    return cards;
}

}  // namespace

ExitCode showCards(const ShowRequest& request, const CliEnvironment& environment)
{
    const auto cards = readCards(request.book, request.uids, environment);
    printAs(environment, request.book.format,
            {.table = [&] { return cardsText(cards); },
             .json =
                 [&](JsonCharacters characters) {
                     return cardsJson(request.book.addressBook, cards, characters);
                 }});
    return ExitCode::Done;
}

ExitCode showDifferences(const DiffRequest& request, const CliEnvironment& environment)
{
    const auto cards = readCards(request.book, request.uids, environment);
    printAs(environment, request.book.format,
            {.table = [&] { return differencesText(cards.at(0), cards.at(1)); },
             .json =
                 [&](JsonCharacters characters) {
                     return differencesJson(request.book.addressBook, cards.at(0), cards.at(1),
                                            characters);
                 }});
    return ExitCode::Done;
}

}  // namespace dunmora
