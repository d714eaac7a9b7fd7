#include "programs/dunmora-cli/DeleteCommand.h"

#include "adapters/posix/CardFileName.h"
#include "adapters/posix/NewFile.h"
#include "base/Settings.h"
#include "engine/ContactsParser.h"
#include "engine/MatchKey.h"
#include "platform/AddressBook.h"
#include "platform/Alert.h"
#include "platform/CardSource.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/CommandError.h"
#include "programs/dunmora-cli/CommandLine.h"
#include "programs/dunmora-cli/ContactJson.h"
#include "programs/dunmora-cli/DeletionMarks.h"
#include "programs/dunmora-cli/DeletionTable.h"
#include "programs/dunmora-cli/DeletionWarnings.h"
#include "programs/dunmora-cli/MatchFieldNames.h"
#include "programs/dunmora-cli/MemoryError.h"
#include "programs/dunmora-cli/Report.h"
#include "programs/dunmora-cli/RestoreCommand.h"
#include "programs/dunmora-cli/ResultTexts.h"
#include "programs/dunmora-cli/ReviewSession.h"
#include "programs/dunmora-cli/TextPieces.h"
#include "programs/dunmora-cli/UidLists.h"
#include "programs/dunmora-cli/UniqueWarning.h"
#include "review/CheckedPeople.h"
#include "review/GroupWarnings.h"
#include "review/ReviewTexts.h"
#include "review/UniqueProperties.h"
#include "text/Counted.h"
#include "text/DisplayText.h"

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace dunmora {

namespace {

bool asks(const DeleteRequest& request)
{
    return !request.yes && !request.dryRun;
}

/// Unchecks the first of every group that would lose every copy, and everyone who is checked
/// without being a duplicate.
void keepOne(ContactsParser& engine, GroupWarnings& warnings)
{
    warnings.rowsEdited(engine, keepOneOfEach(engine, warnings));
    uncheckWithoutDuplicates(engine);
}

/// "Ann Lee, Ben Lee". Never shortened: these names are shown nowhere else.
std::string enumerated(const std::vector<std::string>& names)
{
    std::string text;
    for (const auto& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

/// Reports what the user may have overlooked. Returns whether the deletion may continue.
bool passesGuards(const ContactsParser& engine, const GroupWarnings& warnings,
                  const CardSource* cards, const DeleteRequest& request,
                  const CliEnvironment& environment)
{
    const auto lost =
        request.allowLastCopy ? std::vector<std::string>() : lastCopies(engine, warnings, cards);
    const auto blank =
        request.allowBlankMatch ? 0 : warnings.checkedPeopleWhoShareOnlyEmptyFields();
    if (!lost.empty()) {
        report(environment, warningText(GroupWarning::LosesEveryCopy, lost.size()) + ": " +
                                enumerated(lost) +
                                ". Use --keep-one to keep one copy of each, or --allow-last-copy "
                                "to delete them all.");
    }
    if (blank > 0) {
        report(environment, countOfPeople(blank) + " to be deleted " +
                                (blank == 1 ? "shares" : "share") +
                                " only empty fields with others. Use --allow-blank-match to "
                                "delete them anyway.");
    }
    return lost.empty() && blank == 0;
}

/// The content of a backup of everyone who is checked. Errors: CommandError or PlatformError when
/// there can be none.
std::string backupOf(const ReviewSession& session, const ContactsParser& engine)
{
    const auto& source = session.cardSource();
    return source.cards(checkedAmong(session.addressBook().people(), engine));
}

/// Reports a backup that cannot be written before anything else happens, also in a dry run.
void checkBackup(const ReviewSession& session, const ContactsParser& engine,
                 const DeleteRequest& request)
{
    const auto& file = *request.backup;
    std::error_code error;
    if (std::filesystem::exists(std::filesystem::symlink_status(file, error))) {
        throw CommandError(ExitCode::Failed,
                           quotedPath(file) +
                               " already exists. Choose another file for the backup.");
    }
    if (!std::filesystem::is_directory(folderOf(file), error)) {
        throw CommandError(ExitCode::Failed, "The folder of " + quotedPath(file) +
                                                 " does not exist. Create it first.");
    }
    if (wouldJoinBook(file, request.book.addressBook)) {
        throw CommandError(ExitCode::WrongUse,
                           quotedPath(file) +
                               " would become part of the address book. Choose another folder "
                               "for the backup.");
    }
    backupOf(session, engine);
}

/// Shows the people to be deleted: in the result, and on the terminal where the user is asked when
/// the result is not shown there.
void show(const ContactsParser& engine, const UniqueProperties& properties, const CardSource* cards,
          const DeleteRequest& request, const CliEnvironment& environment)
{
    const auto printTable = [&](const TextPieces::Print& print, const TableStyle& style) {
        TextPieces out(print);
        printDeletionTable(out, engine, properties, cards, style);
        out.printRest();
    };
    const auto match = chosenMatchFields();
    const bool isResult = request.book.format == OutputFormat::Table;
    if (isResult) {
        printTable([&](std::string_view piece) { printText(environment, piece); },
                   outputStyle(environment, request.book.width, match));
    }
    if (asks(request) && !(isResult && environment.outIsTerminal)) {
        printTable([&](std::string_view piece) { environment.err << piece << std::flush; },
                   errorStyle(environment, request.book.width, match));
    }
}

/// What to call the address book: the name that the user gave, unless it is a book with a name.
std::string bookName(const DeleteRequest& request, const ReadingNotes& notes)
{
    return quotedText(notes.books.size() == 1 ? notes.books.front() : request.book.addressBook);
}

bool userAgrees(std::size_t people, const std::string& book, const CliEnvironment& environment)
{
    environment.err << countOfPeople(people) << " will be deleted from " << book << ".\n";
    return Platform::current().alert.runModal(deletionQuestion()) != Alert::kAlternateButton;
}

/// Writes the backup, if the user wants one, and deletes the people. A backup stays once it is
/// written.
void backUpAndDelete(ContactsParser& engine, const ReviewSession& session,
                     const std::vector<std::string>& uids, const DeleteRequest& request)
{
    if (request.backup && !request.dryRun) {
        const auto cards = backupOf(session, engine);
        writeNewFile(*request.backup, {cards});
    }
    try {
        namingBookInMemoryErrors(request.book.addressBook, [&] { engine.deleteContacts(uids); });
    } catch (const std::runtime_error& error) {
        if (!request.backup || request.dryRun) {
            throw;
        }
        throw CommandError(ExitCode::Failed, std::string(error.what()) + " The backup is kept in " +
                                                 quotedPath(*request.backup) + ".");
    }
}

std::string resultText(const ContactsParser& engine, std::size_t deleted,
                       const DeleteRequest& request)
{
    std::string text = '\n' + countOfPeople(deleted);
    text += request.dryRun ? " would be deleted.\n" : " deleted.\n";
    if (request.backup && !request.dryRun) {
        text += "Backup: " + displayText(request.backup->string()) + '\n';
    }
    return text + totalText(engine) + '\n';
}

/// Removes the uids of people whom the engine still has, because another program removed them from
/// the book in the meantime: they were not deleted here. There were this many contacts before.
void eraseKept(std::vector<std::string>& uids, const ContactsParser& engine,
               std::size_t contactsBefore)
{
    // Usually nobody is to be looked up: a deletion forgets at most the people with these uids.
    if (engine.contacts().size() + uids.size() > contactsBefore) {
        std::erase_if(
            uids, [&](const std::string& uid) { return engine.contacts().find(uid) != nullptr; });
    }
}

void printResult(const ContactsParser& engine, const std::vector<std::string>& uids,
                 const DeletionWarnings& warnings, const std::vector<std::string>& remarks,
                 const DeleteRequest& request, const CliEnvironment& environment)
{
    try {
        namingBookInMemoryErrors(request.book.addressBook, [&] {
            printAs(environment, request.book.format,
                    {.table = [&] { return resultText(engine, uids.size(), request); },
                     .json =
                         [&](JsonCharacters characters) {
                             return deletionJson(engine, uids, request.dryRun, warnings, remarks,
                                                 characters);
                         }});
        });
    } catch (const CommandError& error) {
        if (request.dryRun || uids.empty()) {
            throw;
        }
        // The message must not read as if nothing had been deleted.
        throw CommandError(
            ExitCode::Failed,
            std::string(error.what()) + " However, " + countOfPeople(uids.size()) +
                (uids.size() == 1 ? " was deleted." : " were deleted.") +
                (request.backup ? " The backup is " + quotedPath(*request.backup) + "." : ""));
    }
}

/// Names the command that puts the people back. A backup goes into one address book.
void reportWayBack(const DeleteRequest& request, const CliEnvironment& environment)
{
    const auto& book = request.book.addressBook;
    const bool isOne = book != environment.severalBooksName;
    report(environment, "To put these people back: " +
                            restoreCommand(request.backup->string(), isOne ? book : book + "UID",
                                           environment.charset) +
                            (isOne ? "" : " (for the UID of one address book)"));
}

}  // namespace

ExitCode deletePeople(const DeleteRequest& request, const CliEnvironment& environment)
{
    if (asks(request) && !(environment.inIsTerminal && environment.errIsTerminal)) {
        throw CommandError(ExitCode::WrongUse,
                           "delete needs --yes when it cannot ask on a terminal.");
    }
    const auto withListed = [&](std::vector<std::string> uids,
                                const std::vector<std::string>& files) {
        auto listed = readUidLists(files, request.book.quiet, environment);
        std::move(listed.begin(), listed.end(), std::back_inserter(uids));
        return uids;
    };
    const auto check = withListed(request.check, request.checkFrom);
    const auto uncheck = withListed(request.uncheck, request.uncheckFrom);
    ReviewSession session(request.book, environment,
                          request.dryRun ? Changes::NotMade : Changes::Made);
    if (!insistOnMatchField(chosenMatchFields())) {
        return ExitCode::WrongUse;
    }

    auto& engine = session.review();
    applyMarks(engine, check, uncheck);
    GroupWarnings warnings;
    warnings.update(engine);
    if (request.keepOne) {
        keepOne(engine, warnings);
    }
    const auto remarks = session.addressBook().notes().remarks;
    auto uids = checkedUids(engine);
    if (uids.empty()) {
        Settings::MsgBox(kNobodyChecked);
        if (request.book.format == OutputFormat::Json) {
            printResult(engine, uids, {}, remarks, request, environment);
        }
        return ExitCode::Done;
    }
    if (!passesGuards(engine, warnings, session.cards(), request, environment)) {
        return ExitCode::Failed;
    }
    session.addressBook().checkWritable(uids);
    if (request.backup) {
        checkBackup(session, engine, request);
    }

    UniqueProperties properties;
    namingBookInMemoryErrors(request.book.addressBook, [&] {
        properties.read(engine, session.cards(), UniqueProperties::Hashes::WhenAsked);
    });
    show(engine, properties, session.cards(), request, environment);
    reportUnique(properties, request.book, environment);
    if (asks(request) &&
        !userAgrees(uids.size(), bookName(request, session.addressBook().notes()), environment)) {
        report(environment, "Nothing was deleted.");
        return ExitCode::Failed;
    }
    // Nobody knows any more after the deletion.
    DeletionWarnings known;
    if (request.book.format == OutputFormat::Json) {
        namingBookInMemoryErrors(request.book.addressBook, [&] {
            known = deletionWarnings(engine, uids, warnings, properties);
        });
    }
    const auto contactsBefore = engine.contacts().size();
    backUpAndDelete(engine, session, uids, request);
    eraseKept(uids, engine, contactsBefore);
    printResult(engine, uids, known, remarks, request, environment);
    if (request.backup && !request.dryRun && !request.book.quiet && session.canRestore()) {
        reportWayBack(request, environment);
    }
    return ExitCode::Done;
}

}  // namespace dunmora
