#include "programs/dunmora-cli/CommandLine.h"

#include "programs/dunmora-cli/CommandError.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <iterator>

namespace dunmora {

const std::string_view kUsage =
    "Usage:\n"
    "  dunmora-cli list   ADDRESS-BOOK [--match FIELDS] [--format table|json|csv] [--quiet]\n"
    "  dunmora-cli delete ADDRESS-BOOK [--match FIELDS] [--check UID]... [--uncheck UID]...\n"
    "                     [--keep-one] [--dry-run] [--yes] [--backup FILE] [--allow-last-copy]\n"
    "                     [--allow-blank-match] [--format table|json] [--quiet]\n"
    "  dunmora-cli restore BACKUP ADDRESS-BOOK [--dry-run] [--yes] [--format table|json] "
    "[--quiet]\n"
    "  dunmora-cli show   ADDRESS-BOOK UID... [--format table|json] [--quiet]\n"
    "  dunmora-cli diff   ADDRESS-BOOK UID UID [--format table|json] [--quiet]\n"
    "  dunmora-cli fields [FIELDS]\n"
    "  dunmora-cli books  [--format table|json] [--quiet]\n"
    "  dunmora-cli --help | --version\n";

namespace {

constexpr auto kExitCodes =
    "Exit status: 0 success; 1 the address book could not be read or saved, somebody could not be "
    "restored, or the command was refused or declined; 2 usage error.";

/// What `--format` accepts; only a review can be CSV.
constexpr std::array kFormats{OutputFormat::Table, OutputFormat::Json};
constexpr std::array kReviewFormats{OutputFormat::Table, OutputFormat::Json, OutputFormat::Csv};

/// For `expected`: one or more values.
constexpr int kAnyNumber = -1;

/// The parsed values. A value is used only when its option was given.
struct Values {
    BookRequest book;
    DeleteRequest deletion;
    RestoreRequest restoration;
    std::vector<std::string> uids;
    std::string match;
    std::string backup;
    std::string fields;
};

CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& description,
                     const std::string& version)
{
    auto& command = *app.add_subcommand(name, description);
    command.set_version_flag("--version", version, "Print the version and exit");
    command.footer(kExitCodes);
    return command;
}

void addFormatOption(CLI::App& command, Values& values, std::span<const OutputFormat> formats)
{
    std::vector<std::string> names;
    std::transform(formats.begin(), formats.end(), std::back_inserter(names), formatName);
    const auto store = [&values](const std::string& name) {
        values.book.format = formatNamed(name);
    };
    command
        .add_option_function<std::string>(
            "--format", store,
            "How to print the result (default: table); a table shows times in local time, "
            "the others in UTC")
        ->type_name("FORMAT")
        ->check(CLI::IsMember(names));
}

void addQuietOption(CLI::App& command, Values& values)
{
    command.add_flag("--quiet", values.book.quiet,
                     "Show errors only: no progress, notes or warnings");
}

void addBookArgument(CLI::App& command, Values& values, const std::string& systemBookHelp)
{
    command
        .add_option("ADDRESS-BOOK", values.book.addressBook,
                    "A vCard file or a folder whose *.vcf files hold the cards; " + systemBookHelp)
        ->required()
        ->type_name("");
}

void addBookOptions(CLI::App& command, Values& values, std::span<const OutputFormat> formats,
                    const std::string& systemBookHelp)
{
    addBookArgument(command, values, systemBookHelp);
    command
        .add_option("--match", values.match,
                    "The fields to compare, separated by commas: " + matchFieldList() +
                        " (default: the stored ones)")
        ->type_name("FIELDS");
    addFormatOption(command, values, formats);
    addQuietOption(command, values);
}

/// The options of a command that prints the cards of people: as many as it takes, or at least one.
void addCardOptions(CLI::App& command, Values& values, int people,
                    const std::string& systemBookHelp)
{
    addBookArgument(command, values, systemBookHelp);
    command.add_option("UID", values.uids, "The people, by the uids that list shows")
        ->required()
        ->type_name("")
        ->expected(people);
    addFormatOption(command, values, kFormats);
    addQuietOption(command, values);
}

/// An option with one value that may be repeated.
void addUidOption(CLI::App& command, const std::string& name, std::vector<std::string>& uids,
                  const std::string& description)
{
    command.add_option(name, uids, description)
        ->type_name("UID")
        ->allow_extra_args(false)
        ->take_all();
}

void addDeleteOptions(CLI::App& command, Values& values)
{
    auto& deletion = values.deletion;
    addUidOption(command, "--check", deletion.check, "Check this person for deletion");
    addUidOption(command, "--uncheck", deletion.uncheck, "Uncheck this person");
    command.add_flag("--keep-one", deletion.keepOne,
                     "Keep the first person of every group that would lose every copy, and people "
                     "in no group");
    command.add_flag("--dry-run", deletion.dryRun, "Show what would be deleted and write nothing");
    command.add_flag("--yes", deletion.yes, "Delete without asking");
    command
        .add_option("--backup", values.backup,
                    "First write the cards to be deleted to this new file")
        ->type_name("FILE");
    command.add_flag("--allow-last-copy", deletion.allowLastCopy,
                     "Delete people of whom no copy would be left");
    command.add_flag("--allow-blank-match", deletion.allowBlankMatch,
                     "Delete people who share only empty fields");
}

void addRestoreOptions(CLI::App& command, Values& values, const std::string& systemBookHelp)
{
    auto& restoration = values.restoration;
    command.add_option("BACKUP", values.backup, "A vCard file with the people to restore")
        ->required()
        ->type_name("");
    addBookArgument(command, values, systemBookHelp);
    command.add_flag("--dry-run", restoration.dryRun,
                     "Show how many people would be restored and write nothing");
    command.add_flag("--yes", restoration.yes, "Restore without asking");
    addFormatOption(command, values, kFormats);
    addQuietOption(command, values);
}

/// The arguments with every "--name=" split into the option and an empty value; the parser would
/// take the next argument as the value.
std::vector<std::string> withEmptyValues(std::span<const std::string> arguments)
{
    std::vector<std::string> result;
    bool options = true;
    for (const auto& argument : arguments) {
        options = options && argument != "--";
        if (options && argument.starts_with("--") && argument.find('=') == argument.size() - 1) {
            result.push_back(argument.substr(0, argument.size() - 1));
            result.emplace_back();
        } else {
            result.push_back(argument);
        }
    }
    return result;
}

bool wasGiven(const CLI::App& command, const std::string& option)
{
    return command.get_option_no_throw(option) != nullptr && command.count(option) > 0;
}

BookRequest bookRequest(const CLI::App& command, const Values& values)
{
    auto book = values.book;
    if (book.addressBook.empty()) {
        throw CommandError(ExitCode::WrongUse, "The address book's name is empty.");
    }
    if (command.get_option_no_throw("--match") != nullptr && wasGiven(command, "--match")) {
        book.match = parseMatchFields(values.match);
    }
    return book;
}

DeleteRequest deleteRequest(const CLI::App& command, const Values& values)
{
    auto request = values.deletion;
    request.book = bookRequest(command, values);
    if (wasGiven(command, "--backup")) {
        if (values.backup.empty()) {
            throw CommandError(ExitCode::WrongUse, "The backup's file name is empty.");
        }
        request.backup = values.backup;
    }
    return request;
}

RestoreRequest restoreRequest(const CLI::App& command, const Values& values)
{
    auto request = values.restoration;
    const auto book = bookRequest(command, values);
    request.addressBook = book.addressBook;
    request.format = book.format;
    request.quiet = book.quiet;
    if (values.backup.empty()) {
        throw CommandError(ExitCode::WrongUse, "The backup's file name is empty.");
    }
    request.backup = values.backup;
    return request;
}

FieldsRequest fieldsRequest(const CLI::App& command, const Values& values)
{
    FieldsRequest request;
    if (wasGiven(command, "FIELDS")) {
        request.fields = parseMatchFields(values.fields);
    }
    return request;
}

}  // namespace

Request parseCommandLine(std::span<const std::string> arguments, const std::string& version,
                         const std::string& systemBookHelp)
{
    const auto versionLine = "dunmora-cli " + version;
    Values values;

    CLI::App app("Finds and deletes duplicated people in an address book.", "dunmora-cli");
    app.set_version_flag("--version", versionLine, "Print the version and exit");
    app.footer(kExitCodes);
    app.require_subcommand(1);

    auto& list =
        addCommand(app, "list", "Shows the duplicates and what would be deleted", versionLine);
    addBookOptions(list, values, kReviewFormats, systemBookHelp);
    auto& deletion = addCommand(app, "delete", "Deletes the checked duplicates", versionLine);
    addBookOptions(deletion, values, kFormats, systemBookHelp);
    addDeleteOptions(deletion, values);
    auto& restoration = addCommand(
        app, "restore", "Puts the people of a backup back into an address book", versionLine);
    addRestoreOptions(restoration, values, systemBookHelp);
    auto& show = addCommand(app, "show", "Shows the whole cards of people", versionLine);
    addCardOptions(show, values, kAnyNumber, systemBookHelp);
    auto& diff = addCommand(app, "diff", "Shows what differs between two people", versionLine);
    addCardOptions(diff, values, 2, systemBookHelp);
    auto& fields = addCommand(app, "fields", "Shows or stores the match fields of the preferences",
                              versionLine);
    fields
        .add_option("FIELDS", values.fields,
                    "The fields to store, separated by commas: " + matchFieldList())
        ->type_name("");
    auto& books = addCommand(app, "books", "Lists the address books of the desktop", versionLine);
    addFormatOption(books, values, kFormats);
    addQuietOption(books, values);

    try {
        auto reversed = withEmptyValues(arguments);
        std::reverse(reversed.begin(), reversed.end());
        app.parse(std::move(reversed));
    } catch (const CLI::CallForHelp&) {
        return PrintRequest{app.help()};
    } catch (const CLI::CallForVersion& call) {
        return PrintRequest{std::string(call.what()) + '\n'};
    } catch (const CLI::ParseError& error) {
        throw CommandError(
            ExitCode::WrongUse,
            app.get_subcommands().empty()
                ? "A command is needed: list, delete, restore, show, diff, fields or "
                  "books."
                : error.what());
    }
    if (list.parsed()) {
        return ListRequest{bookRequest(list, values)};
    }
    if (deletion.parsed()) {
        return deleteRequest(deletion, values);
    }
    if (restoration.parsed()) {
        return restoreRequest(restoration, values);
    }
    if (show.parsed()) {
        return ShowRequest{bookRequest(show, values), values.uids};
    }
    if (diff.parsed()) {
        return DiffRequest{bookRequest(diff, values), values.uids};
    }
    if (books.parsed()) {
        return BooksRequest{values.book.format, values.book.quiet};
    }
    return fieldsRequest(fields, values);
}

}  // namespace dunmora
