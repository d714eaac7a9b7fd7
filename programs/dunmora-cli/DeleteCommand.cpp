#include "programs/dunmora-cli/DeleteCommand.h"

#include "adapters/posix/NewFile.h"
#include "base/Settings.h"
#include "engine/ContactsParser.h"
#include "engine/MatchKey.h"
#include "platform/AddressBook.h"
#include "platform/Alert.h"
#include "platform/CardSource.h"
#include "platform/PlatformError.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/CommandError.h"
#include "programs/dunmora-cli/CommandLine.h"
#include "programs/dunmora-cli/ContactJson.h"
#include "programs/dunmora-cli/ContactTable.h"
#include "programs/dunmora-cli/DeletionMarks.h"
#include "programs/dunmora-cli/MatchFieldNames.h"
#include "programs/dunmora-cli/Report.h"
#include "programs/dunmora-cli/ReviewSession.h"
#include "text/Counted.h"
#include "text/DisplayText.h"

#include <cstddef>
#include <filesystem>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <vector>

namespace dunmora {

namespace {

bool asks(const DeleteRequest& request)
{
    return !request.yes && !request.dryRun;
}

/// "Ann Lee, Ben Lee": all of them, because nobody else tells whom the user is about to lose.
std::string enumerated(const std::vector<std::string>& names)
{
    std::string text;
    for (const auto& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

/// Tells the user what nobody may have reviewed. Returns whether the deletion may go on.
bool passesGuards(const ContactsParser& engine, const DeleteRequest& request,
                  const CliEnvironment& environment)
{
    const auto lost = request.allowLastCopy ? std::vector<std::string>() : lastCopies(engine);
    const auto blank = request.allowBlankMatch ? 0 : blankMatches(engine);
    if (!lost.empty()) {
        report(environment,
               countOfPeople(lost.size()) + " would lose every copy: " + enumerated(lost) +
                   ". With --keep-one one of each is kept, with --allow-last-copy none.");
    }
    if (blank > 0) {
        report(environment, countOfPeople(blank) + " to be deleted " +
                                (blank == 1 ? "shares" : "share") +
                                " only empty fields with others. With --allow-blank-match the "
                                "deletion goes on all the same.");
    }
    return lost.empty() && blank == 0;
}

std::filesystem::path folderOf(const std::filesystem::path& file)
{
    return file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
}

/// Whether the address book, being a folder, would take the new file for a part of itself.
bool wouldJoinBook(const std::filesystem::path& file, const std::filesystem::path& book)
{
    std::error_code error;
    return std::filesystem::is_directory(book, error) && file.extension() == ".vcf" &&
           !file.filename().string().starts_with('.') &&
           std::filesystem::equivalent(folderOf(file), book, error);
}

std::vector<const Person*> peopleWith(AddressBook& book, const std::vector<std::string>& uids)
{
    const std::unordered_set<std::string_view> checked(uids.begin(), uids.end());
    std::vector<const Person*> people;
    for (const auto& person : book.people()) {
        if (checked.contains(person.uid)) {
            people.push_back(&person);
        }
    }
    return people;
}

/// Finds out before anything happens, in a dry run, too, that the backup cannot be written.
void checkBackup(AddressBook& book, const CardSource& cards, const std::vector<std::string>& uids,
                 const DeleteRequest& request)
{
    const auto& file = *request.backup;
    std::error_code error;
    if (std::filesystem::exists(std::filesystem::symlink_status(file, error))) {
        throw CommandError(ExitCode::Failed, "“" + file.string() + "” exists already.");
    }
    if (!std::filesystem::is_directory(folderOf(file), error)) {
        throw CommandError(ExitCode::Failed,
                           "The folder of “" + file.string() + "” does not exist.");
    }
    if (wouldJoinBook(file, request.book.addressBook)) {
        throw CommandError(ExitCode::WrongUse,
                           "“" + file.string() + "” would become a part of the address book.");
    }
    static_cast<void>(cards.cards(peopleWith(book, uids)));
}

/// Shows who is going to be deleted: as a part of the result, and to those who are asked where they
/// would not see that.
void show(const ContactsParser& engine, const std::vector<std::string>& uids,
          const DeleteRequest& request, const CliEnvironment& environment)
{
    const auto table = [&](bool onTerminal) {
        return contactTable(engine, {uids},
                            onTerminal && environment.wantsColour ? Colour::On : Colour::Off);
    };
    const bool isResult = request.book.format == OutputFormat::Table;
    if (isResult) {
        print(environment, table(environment.outIsTerminal));
    }
    if (asks(request) && !(isResult && environment.outIsTerminal)) {
        environment.err << table(environment.errIsTerminal) << std::flush;
    }
}

bool userAgrees()
{
    return Platform::current().alert.runModal(
               {"Confirm to delete",
                "The checked contacts will be deleted from Address Book. \r\nDo you really want to "
                "continue?",
                "Okay", "Cancel"}) != Alert::kAlternateButton;
}

/// Backs the people up where asked, and deletes them. A backup that was written stays, whatever
/// comes after it.
void backUpAndDelete(ContactsParser& engine, const ReviewSession& session,
                     const std::vector<std::string>& uids, const DeleteRequest& request)
{
    if (request.backup && !request.dryRun) {
        const auto cards = session.cardSource().cards(peopleWith(session.addressBook(), uids));
        writeNewFile(*request.backup, {cards});
    }
    try {
        engine.deleteContacts(uids);
    } catch (const PlatformError& error) {
        if (!request.backup || request.dryRun) {
            throw;
        }
        throw CommandError(ExitCode::Failed, std::string(error.what()) +
                                                 " The backup is kept in “" +
                                                 request.backup->string() + "”.");
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
    return text + totalLine(engine);
}

void printResult(const ContactsParser& engine, std::vector<std::string> uids,
                 const DeleteRequest& request, const CliEnvironment& environment)
{
    // Someone who was taken out of a live book meanwhile was not deleted by us.
    std::erase_if(uids,
                  [&](const std::string& uid) { return engine.contacts().find(uid) != nullptr; });
    try {
        print(environment, request.book.format == OutputFormat::Table
                               ? resultText(engine, uids.size(), request)
                               : deletionJson(engine, uids, request.dryRun,
                                              environment.outIsTerminal ? JsonCharacters::Ascii
                                                                        : JsonCharacters::Utf8));
    } catch (const CommandError& error) {
        if (request.dryRun || uids.empty()) {
            throw;
        }
        // The failure must not read as if nothing had happened.
        throw CommandError(
            ExitCode::Failed,
            std::string(error.what()) + " All the same, " + countOfPeople(uids.size()) +
                (uids.size() == 1 ? " was deleted." : " were deleted.") +
                (request.backup ? " The backup is “" + request.backup->string() + "”." : ""));
    }
}

}  // namespace

ExitCode deletePeople(const DeleteRequest& request, const CliEnvironment& environment)
{
    if (asks(request) && !(environment.inIsTerminal && environment.errIsTerminal)) {
        throw CommandError(ExitCode::WrongUse, "Without a terminal to ask on, delete needs --yes.");
    }
    ReviewSession session(request.book, environment,
                          request.dryRun ? Changes::NotMade : Changes::Made);
    if (!insistOnMatchField(chosenMatchFields())) {
        return ExitCode::WrongUse;
    }

    auto& engine = session.review();
    applyMarks(engine, request.check, request.uncheck);
    if (request.keepOne) {
        keepOneCopy(engine);
    }
    const auto uids = checkedUids(engine);
    if (uids.empty()) {
        Settings::MsgBox("No contact checked to be deleted!");
        if (request.book.format == OutputFormat::Json) {
            printResult(engine, uids, request, environment);
        }
        return ExitCode::Done;
    }
    if (!passesGuards(engine, request, environment)) {
        return ExitCode::Failed;
    }
    if (request.backup) {
        checkBackup(session.addressBook(), session.cardSource(), uids, request);
    }

    show(engine, uids, request, environment);
    if (asks(request) && !userAgrees()) {
        report(environment, "Nothing was deleted.");
        return ExitCode::Failed;
    }
    backUpAndDelete(engine, session, uids, request);
    printResult(engine, uids, request, environment);
    return ExitCode::Done;
}

}  // namespace dunmora
