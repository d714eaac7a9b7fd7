#include "programs/dunmora-cli/ReviewSession.h"

#include "base/Settings.h"
#include "engine/ContactsParser.h"
#include "platform/AddressBook.h"
#include "platform/UserDefaults.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/CommandError.h"
#include "programs/dunmora-cli/CommandLine.h"
#include "programs/dunmora-cli/DryRunAddressBook.h"
#include "programs/dunmora-cli/MatchFieldNames.h"
#include "programs/dunmora-cli/Report.h"
#include "programs/dunmora-cli/StandardInput.h"

#include <string>
#include <utility>

namespace dunmora {

namespace {

OpenedBook openBook(const BookRequest& request, const CliEnvironment& environment, Changes changes)
{
    auto book = openForReading(request, environment);
    if (changes == Changes::NotMade) {
        book.addressBook = std::make_shared<DryRunAddressBook>(std::move(book.addressBook));
    }
    return book;
}

/// Whether a line for progress can be drawn. Where the user types the cards it would be drawn over
/// them.
bool showsProgress(const BookRequest& request, const CliEnvironment& environment)
{
    const bool isTyped = request.addressBook == kStandardInput && environment.inIsTerminal;
    return environment.errIsTerminal && !environment.isDumbTerminal && !request.quiet && !isTyped;
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
    // Another program may have stored other match fields since they were read.
    environment.userDefaults.synchronize();
    if (request.match) {
        Settings::settings().setMatchFields(*request.match);
    }
    if (showsProgress(request, environment)) {
        progressLine_.emplace(environment.err, environment.errColumns, environment.progressDelay);
    }
}

ContactsParser& ReviewSession::review()
{
    auto& engine = ContactsParser::parser();
    engine.load();
    engine.findDupes();
    reportNotes();
    return engine;
}

const CardSource& ReviewSession::cardSource() const
{
    const auto* const source = cards();
    if (source == nullptr) {
        throw CommandError(ExitCode::Failed,
                           "This address book cannot be backed up. Back it up with another "
                           "program, then delete without --backup.");
    }
    return *source;
}

void ReviewSession::reportNotes() const
{
    if (request_.quiet) {
        return;
    }
    for (const auto& remark : addressBook().notes().remarks) {
        report(environment_, "note: " + remark);
    }
}

}  // namespace dunmora
