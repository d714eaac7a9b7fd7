#include "programs/dunmora-cli/CommandParser.h"

#include "programs/dunmora-cli/CommandError.h"
#include "programs/dunmora-cli/UsageErrors.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace dunmora {

namespace {

constexpr auto kExitCodes =
    "Exit status: 0 success; 1 the address book could not be read or saved, somebody could not be "
    "restored, or the command was refused or declined; 2 usage error; 3 list --fail-if-found "
    "found duplicates.";

/// What `--format` accepts; only a review can be CSV.
constexpr std::array kFormats{OutputFormat::Table, OutputFormat::Json};
constexpr std::array kReviewFormats{OutputFormat::Table, OutputFormat::Json, OutputFormat::Csv};

/// For `expected`: one or more values.
constexpr int kAnyNumber = -1;

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

/// An option with one value of this type that may be repeated.
void addRepeatable(CLI::App& command, const std::string& name, const std::string& type,
                   std::vector<std::string>& values, const std::string& description)
{
    command.add_option(name, values, description)
        ->type_name(type)
        ->allow_extra_args(false)
        ->take_all();
}

}  // namespace

CommandParser::CommandParser(const std::string& version, const std::string& systemBookHelp)
    : app_("Finds and deletes duplicated people in an address book.", "dunmora-cli")
{
    app_.set_version_flag("--version", version, "Print the version and exit");
    app_.footer(kExitCodes);
    app_.require_subcommand(1);
    const auto bookHelp =
        "A vCard file, or a folder whose .vcf and .vcard files hold the cards; " + systemBookHelp;
    const auto readableBookHelp =
        "A vCard file, - for standard input, or a folder whose .vcf and .vcard files hold the "
        "cards; " +
        systemBookHelp;

    auto& list = addCommand("list", "Shows the duplicates and what would be deleted", version,
                            "  dunmora-cli list contacts.vcf\n"
                            "  dunmora-cli list contacts.vcf --match lastname,mobile --format csv");
    addBookOptions(list, kReviewFormats, readableBookHelp);
    list.add_flag("--fail-if-found", failIfFound,
                  "Exit with status 3 when there are duplicates, after printing them");
    auto& deletionCommand = addCommand("delete", "Deletes the checked duplicates", version,
                                       "  dunmora-cli delete contacts.vcf --dry-run\n"
                                       "  dunmora-cli delete contacts.vcf --backup removed.vcf");
    addBookOptions(deletionCommand, kFormats, bookHelp);
    addDeleteOptions(deletionCommand);
    auto& restorationCommand =
        addCommand("restore", "Puts the people of a backup back into an address book", version,
                   "  dunmora-cli restore removed.vcf contacts.vcf --dry-run\n"
                   "  dunmora-cli restore removed.vcf contacts.vcf");
    addRestoreOptions(restorationCommand, bookHelp);
    auto& show = addCommand("show", "Shows the whole cards of people", version,
                            "  dunmora-cli show contacts.vcf ann-1\n"
                            "  dunmora-cli show contacts.vcf ann-1 ann-2 --format json");
    addCardOptions(show, kAnyNumber, readableBookHelp);
    auto& diff = addCommand("diff", "Shows what differs between two people", version,
                            "  dunmora-cli diff contacts.vcf ann-1 ann-2\n"
                            "  dunmora-cli diff - ann-1 ann-2 --format json < contacts.vcf");
    addCardOptions(diff, 2, readableBookHelp);
    auto& fieldsCommand =
        addCommand("fields", "Shows or stores the match fields of the preferences", version,
                   "  dunmora-cli fields\n"
                   "  dunmora-cli fields firstname,lastname,mobile");
    fieldsCommand
        .add_option("FIELDS", fields,
                    "The fields to store, separated by commas: " + matchFieldList())
        ->type_name("");
    auto& books = addCommand("books", "Lists the address books of the desktop", version,
                             "  dunmora-cli books\n"
                             "  dunmora-cli books --format json");
    books.add_flag("--names", namesOnly,
                   "Read none of the books, which is quick; whether they are writable and how many "
                   "people they hold stays unknown");
    addFormatOption(books, kFormats);
    addWideOption(books);
    addQuietOption(books);
    auto& help = addCommand("help", "Shows the help of a command", version,
                            "  dunmora-cli help\n"
                            "  dunmora-cli help list");
    help.add_option("COMMAND", helpedCommand, "The command (default: the program)")->type_name("");
}

void CommandParser::parse(std::span<const std::string> arguments)
{
    const auto separated = withEmptyValues(arguments);
    insistOnCommand(app_, separated);
    try {
        // The parser takes the last argument first.
        app_.parse(std::vector<std::string>(separated.rbegin(), separated.rend()));
    } catch (const CLI::Success&) {
        throw;
    } catch (const CLI::ParseError& error) {
        throw wrongArguments(app_, separated, error.what());
    }
}

bool CommandParser::wasGiven(const std::string& option) const
{
    return command().get_option_no_throw(option) != nullptr && command().count(option) > 0;
}

std::string CommandParser::helpOf(const std::string& name) const
{
    if (name.empty()) {
        return app_.get_formatter()->make_help(&app_, app_.get_name(), CLI::AppFormatMode::Normal);
    }
    const auto commands = app_.get_subcommands(
        [&name](const CLI::App* command) { return command->get_name() == name; });
    if (commands.empty()) {
        throw unknownCommand(app_, name);
    }
    return commands.front()->help(app_.get_name());
}

CLI::App& CommandParser::addCommand(const std::string& name, const std::string& description,
                                    const std::string& version, const std::string& examples)
{
    auto& command = *app_.add_subcommand(name, description);
    command.set_version_flag("--version", version, "Print the version and exit");
    command.footer(std::string(kExitCodes) + "\n\nExamples:\n" + examples);
    return command;
}

void CommandParser::addFormatOption(CLI::App& command, std::span<const OutputFormat> formats)
{
    std::vector<std::string> names;
    std::transform(formats.begin(), formats.end(), std::back_inserter(names), formatName);
    const auto store = [this](const std::string& name) { book.format = formatNamed(name); };
    command
        .add_option_function<std::string>(
            "--format", store,
            "How to print the result (default: table); a table shows times in local time, "
            "the others in UTC")
        ->type_name("FORMAT")
        ->check(CLI::IsMember(names));
}

void CommandParser::addQuietOption(CLI::App& command)
{
    command.add_flag("--quiet", book.quiet, "Show errors only: no progress, notes or warnings");
}

void CommandParser::addWideOption(CLI::App& command)
{
    command.add_flag_callback(
        "--wide", [this] { book.width = TableWidth::Wide; },
        "Show the whole table, however wide, on a terminal too");
}

void CommandParser::addBookArgument(CLI::App& command, const std::string& bookHelp)
{
    command.add_option("ADDRESS-BOOK", book.addressBook, bookHelp)->required()->type_name("");
}

void CommandParser::addBookOptions(CLI::App& command, std::span<const OutputFormat> formats,
                                   const std::string& bookHelp)
{
    addBookArgument(command, bookHelp);
    command
        .add_option("--match", match,
                    "The fields to compare, separated by commas: " + matchFieldList() +
                        " (default: the stored ones)")
        ->type_name("FIELDS");
    addFormatOption(command, formats);
    addWideOption(command);
    addQuietOption(command);
}

/// The options of a command that prints the cards of people: as many as it takes, or at least one.
void CommandParser::addCardOptions(CLI::App& command, int people, const std::string& bookHelp)
{
    addBookArgument(command, bookHelp);
    command.add_option("UID", uids, "The people, by the uids that list shows")
        ->required()
        ->type_name("")
        ->expected(people);
    addFormatOption(command, kFormats);
    addQuietOption(command);
}

void CommandParser::addDeleteOptions(CLI::App& command)
{
    addRepeatable(command, "--check", "UID", deletion.check, "Check this person for deletion");
    addRepeatable(command, "--uncheck", "UID", deletion.uncheck, "Uncheck this person");
    addRepeatable(command, "--check-from", "FILE", deletion.checkFrom,
                  "Check the people whose UIDs are in this file, one per line; - is standard "
                  "input and needs --yes");
    addRepeatable(command, "--uncheck-from", "FILE", deletion.uncheckFrom,
                  "The same, but uncheck them");
    command.add_flag("--keep-one", deletion.keepOne,
                     "Keep the first person of every group that would lose every copy, and people "
                     "in no group");
    command.add_flag("--dry-run", deletion.dryRun, "Show what would be deleted and write nothing");
    command.add_flag("--yes", deletion.yes, "Delete without asking");
    command.add_option("--backup", backup, "First write the cards to be deleted to this new file")
        ->type_name("FILE");
    command.add_flag("--allow-last-copy", deletion.allowLastCopy,
                     "Delete people of whom no copy would be left");
    command.add_flag("--allow-blank-match", deletion.allowBlankMatch,
                     "Delete people who share only empty fields");
}

void CommandParser::addRestoreOptions(CLI::App& command, const std::string& bookHelp)
{
    command.add_option("BACKUP", backup, "A vCard file with the people to restore")
        ->required()
        ->type_name("");
    addBookArgument(command, bookHelp);
    command.add_flag("--dry-run", restoration.dryRun,
                     "Show how many people would be restored and write nothing");
    command.add_flag("--yes", restoration.yes, "Restore without asking");
    addFormatOption(command, kFormats);
    addQuietOption(command);
}

}  // namespace dunmora
