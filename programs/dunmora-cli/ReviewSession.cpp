#include "programs/dunmora-cli/ReviewSession.h"

#include "engine/ContactsParser.h"
#include "platform/UserDefaults.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/CommandLine.h"
#include "programs/dunmora-cli/DryRunAddressBook.h"
#include "programs/dunmora-cli/MatchFieldNames.h"
#include "programs/dunmora-cli/Report.h"

#include <string>
#include <utility>

namespace dunmora {

namespace {

std::unique_ptr<AddressBook> openBook(const BookRequest& request, const CliEnvironment& environment,
                                      Changes changes)
{
    auto book = environment.openAddressBook(request.addressBook);
    if (changes == Changes::NotMade) {
        book = std::make_unique<DryRunAddressBook>(std::move(book));
    }
    return book;
}

}  // namespace

ReviewSession::ReviewSession(const BookRequest& request, const CliEnvironment& environment,
                             Changes changes)
    : request_(request),
      environment_(environment),
      overlay_(environment.userDefaults),
      platform_(openBook(request, environment, changes),
                request.match ? overlay_ : environment.userDefaults, environment)
{
    // Another program may have stored other match fields since this one has read them.
    environment.userDefaults.synchronize();
    if (request.match) {
        storeMatchFields(*request.match);
    }
    if (environment.errIsTerminal && !request.quiet) {
        progressLine_.emplace(environment.err, environment.terminalWidth);
    }
}

ContactsParser& ReviewSession::review()
{
    auto& engine = ContactsParser::parser();
    engine.load();
    engine.findDupes();
    tellNotes();
    return engine;
}

void ReviewSession::tellNotes() const
{
    if (request_.quiet) {
        return;
    }
    for (const auto& remark : addressBook().notes().remarks) {
        report(environment_, "note: " + remark);
    }
}

}  // namespace dunmora
