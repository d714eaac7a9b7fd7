#include "programs/dunmora-cli/CommandLine.h"

#include "programs/dunmora-cli/CommandError.h"
#include "programs/dunmora-cli/CommandParser.h"
#include "programs/dunmora-cli/StandardInput.h"

#include <algorithm>
#include <cstddef>

namespace dunmora {

const std::string_view kUsage =
    "Usage:\n"
    "  dunmora-cli list   ADDRESS-BOOK|- [--match FIELDS] [--format table|json|csv]\n"
    "                     [--fail-if-found] [--wide] [--quiet]\n"
    "  dunmora-cli delete ADDRESS-BOOK [--match FIELDS] [--check UID]... [--uncheck UID]...\n"
    "                     [--check-from FILE|-]... [--uncheck-from FILE|-]...\n"
    "                     [--keep-one] [--dry-run] [--yes] [--backup FILE] [--allow-last-copy]\n"
    "                     [--allow-blank-match] [--format table|json] [--wide] [--quiet]\n"
    "  dunmora-cli restore BACKUP ADDRESS-BOOK [--dry-run] [--yes] [--format table|json] "
    "[--quiet]\n"
    "  dunmora-cli show   ADDRESS-BOOK|- UID... [--format table|json] [--quiet]\n"
    "  dunmora-cli diff   ADDRESS-BOOK|- UID UID [--format table|json] [--quiet]\n"
    "  dunmora-cli fields [FIELDS]\n"
    "  dunmora-cli books  [--names] [--format table|json] [--wide] [--quiet]\n"
    "  dunmora-cli help [COMMAND]\n"
    "  dunmora-cli --help | --version\n";

namespace {

constexpr std::string_view kFileCalledDash = "For a file called “-”, write ./-";

BookRequest bookRequest(const CommandParser& parser)
{
    auto book = parser.book;
    if (book.addressBook.empty()) {
        throw CommandError(ExitCode::WrongUse, "The address book's name is empty.");
    }
    if (parser.wasGiven("--match")) {
        book.match = parseMatchFields(parser.match);
    }
    return book;
}

/// Throws when a book that is to be changed is standard input.
void insistOnBookToChange(const BookRequest& book, const std::string& command)
{
    if (book.addressBook == kStandardInput) {
        throw CommandError(ExitCode::WrongUse,
                           command + " cannot change standard input. Name an address book. " +
                               std::string(kFileCalledDash));
    }
}

std::filesystem::path backupFile(const CommandParser& parser)
{
    if (parser.backup.empty()) {
        throw CommandError(ExitCode::WrongUse, "The backup's file name is empty.");
    }
    if (parser.backup == kStandardInput) {
        throw CommandError(ExitCode::WrongUse,
                           "The backup must be a file. " + std::string(kFileCalledDash));
    }
    return parser.backup;
}

/// Throws when the lists of uids cannot be read, or no question could be answered afterwards.
void insistOnReadableLists(const DeleteRequest& request)
{
    std::ptrdiff_t fromInput = 0;
    for (const auto* const files : {&request.checkFrom, &request.uncheckFrom}) {
        fromInput += std::count(files->begin(), files->end(), kStandardInput);
        if (std::count(files->begin(), files->end(), "") > 0) {
            throw CommandError(ExitCode::WrongUse, "The file name of a list of UIDs is empty.");
        }
    }
    if (fromInput > 1) {
        throw CommandError(ExitCode::WrongUse,
                           "Only one list of UIDs can be read from standard input.");
    }
    if (fromInput > 0 && !request.yes && !request.dryRun) {
        throw CommandError(ExitCode::WrongUse,
                           "delete needs --yes when it reads UIDs from standard input, because "
                           "it cannot ask there.");
    }
}

DeleteRequest deleteRequest(const CommandParser& parser)
{
    auto request = parser.deletion;
    request.book = bookRequest(parser);
    insistOnBookToChange(request.book, "delete");
    insistOnReadableLists(request);
    if (parser.wasGiven("--backup")) {
        request.backup = backupFile(parser);
    }
    return request;
}

RestoreRequest restoreRequest(const CommandParser& parser)
{
    auto request = parser.restoration;
    const auto book = bookRequest(parser);
    insistOnBookToChange(book, "restore");
    request.addressBook = book.addressBook;
    request.format = book.format;
    request.quiet = book.quiet;
    request.backup = backupFile(parser);
    return request;
}

FieldsRequest fieldsRequest(const CommandParser& parser)
{
    FieldsRequest request;
    if (parser.wasGiven("FIELDS")) {
        request.fields = parseMatchFields(parser.fields);
    }
    return request;
}

}  // namespace

Request parseCommandLine(std::span<const std::string> arguments, const std::string& version,
                         const std::string& systemBookHelp)
{
    CommandParser parser("dunmora-cli " + version, systemBookHelp);
    try {
        parser.parse(arguments);
    } catch (const CLI::CallForHelp&) {
        return PrintRequest{parser.help()};
    } catch (const CLI::CallForVersion& call) {
        return PrintRequest{std::string(call.what()) + '\n'};
    }
    if (parser.isCommand("list")) {
        return ListRequest{bookRequest(parser), parser.failIfFound};
    }
    if (parser.isCommand("delete")) {
        return deleteRequest(parser);
    }
    if (parser.isCommand("restore")) {
        return restoreRequest(parser);
    }
    if (parser.isCommand("show")) {
        return ShowRequest{bookRequest(parser), parser.uids};
    }
    if (parser.isCommand("diff")) {
        return DiffRequest{bookRequest(parser), parser.uids};
    }
    if (parser.isCommand("books")) {
        return BooksRequest{parser.book.format, parser.book.quiet, parser.book.width,
                            parser.namesOnly};
    }
    if (parser.isCommand("help")) {
        return PrintRequest{parser.helpOf(parser.helpedCommand)};
    }
    return fieldsRequest(parser);
}

}  // namespace dunmora
