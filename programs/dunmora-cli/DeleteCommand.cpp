#include "programs/dunmora-cli/DeleteCommand.h"

#include "app/Settings.h"
#include "engine/ContactsParser.h"
#include "platform/Alert.h"
#include "platform/PlatformError.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/CommandLine.h"
#include "programs/dunmora-cli/ContactJson.h"
#include "programs/dunmora-cli/ContactTable.h"
#include "programs/dunmora-cli/DeletionMarks.h"
#include "programs/dunmora-cli/MatchFieldNames.h"
#include "programs/dunmora-cli/Report.h"
#include "programs/dunmora-cli/ReviewSession.h"
#include "programs/dunmora-cli/TerminalText.h"

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

constexpr std::size_t kMostNames = 10;

bool asks(const DeleteRequest& request)
{
    return !request.yes && !request.dryRun;
}

/// "Ann Lee, Ben Lee and 3 more"
std::string enumerated(const std::vector<std::string>& names)
{
    std::string text;
    for (std::size_t i = 0; i < names.size() && i < kMostNames; ++i) {
        text += (i > 0 ? ", " : "") + names[i];
    }
    if (names.size() > kMostNames) {
        text += " and " + std::to_string(names.size() - kMostNames) + " more";
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
        report(environment, countOfPeople(blank) +
                                " to be deleted share only empty fields. With --allow-blank-match "
                                "they are deleted all the same.");
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

void checkBackup(const DeleteRequest& request)
{
    if (!request.backup) {
        return;
    }
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
}

/// Shows who is going to be deleted: as a part of the result, or only to those who are asked.
void show(const ContactsParser& engine, const std::vector<std::string>& uids,
          const DeleteRequest& request, const CliEnvironment& environment)
{
    const bool isResult = request.book.format == OutputFormat::Table;
    if (!isResult && !asks(request)) {
        return;
    }
    const bool onTerminal = isResult ? environment.outIsTerminal : environment.errIsTerminal;
    const auto table = contactTable(
        engine, {uids}, onTerminal && environment.wantsColour ? Colour::On : Colour::Off);
    if (isResult) {
        print(environment, table);
    } else {
        environment.err << table << std::flush;
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

void backUp(AddressBook& book, const std::vector<std::string>& uids,
            const std::filesystem::path& file)
{
    const std::unordered_set<std::string_view> checked(uids.begin(), uids.end());
    std::vector<const Person*> people;
    for (const auto& person : book.people()) {
        if (checked.contains(person.uid)) {
            people.push_back(&person);
        }
    }
    book.backUp(people, file);
}

/// Backs the people up where asked, and deletes them. A backup that was written stays, whatever
/// comes after it.
void backUpAndDelete(ContactsParser& engine, AddressBook& book,
                     const std::vector<std::string>& uids, const DeleteRequest& request)
{
    if (request.backup) {
        backUp(book, uids, *request.backup);
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
        text += "Backup: " + printable(request.backup->string()) + '\n';
    }
    return text + totalLine(engine);
}

void printResult(const ContactsParser& engine, std::vector<std::string> uids,
                 const DeleteRequest& request, const CliEnvironment& environment)
{
    // Someone who was taken out of a live book meanwhile was not deleted by us.
    std::erase_if(uids,
                  [&](const std::string& uid) { return engine.contacts().find(uid) != nullptr; });
    print(environment, request.book.format == OutputFormat::Table
                           ? resultText(engine, uids.size(), request)
                           : deletionJson(engine, uids, request.dryRun,
                                          environment.outIsTerminal ? JsonCharacters::Ascii
                                                                    : JsonCharacters::Utf8));
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
    checkBackup(request);

    show(engine, uids, request, environment);
    if (asks(request) && !userAgrees()) {
        report(environment, "Nothing was deleted.");
        return ExitCode::Failed;
    }
    backUpAndDelete(engine, session.addressBook(), uids, request);
    printResult(engine, uids, request, environment);
    return ExitCode::Done;
}

}  // namespace dunmora
