#include "programs/dunmora-cli/UsageErrors.h"

#include "programs/dunmora-cli/NearestName.h"
#include "text/DisplayText.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace dunmora {

namespace {

std::vector<std::string> commandsOf(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const auto* const command : app.get_subcommands({})) {
        names.push_back(command->get_name());
    }
    return names;
}

/// "list, delete or restore"
std::string enumerated(const std::vector<std::string>& names)
{
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += i == 0 ? "" : i + 1 < names.size() ? ", " : " or ";
        text += names[i];
    }
    return text;
}

void appendOptions(std::vector<std::string>& names, const CLI::App& command)
{
    for (const auto* const option : command.get_options({})) {
        for (const auto& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
}

bool isOption(std::string_view argument)
{
    return argument.size() > 1 && argument.front() == '-';
}

/// The option of an argument such as "--format=json".
std::string optionIn(std::string_view argument)
{
    return std::string(argument.substr(0, argument.find('=')));
}

std::string suggestion(std::string_view typed, std::span<const std::string> names)
{
    const auto nearest = nearestName(typed, names);
    return nearest.empty() ? "" : " Did you mean " + quotedText(nearest) + "?";
}

/// Names the help of the command, or that of the program.
std::string whereToRead(const std::string& command)
{
    return " See: dunmora-cli help" + (command.empty() ? "" : ' ' + command);
}

CommandError wrongUse(const std::string& text, const std::string& command)
{
    return {ExitCode::WrongUse, text + whereToRead(command)};
}

/// The error about an option in the place of the command.
CommandError optionBeforeCommand(const CLI::App& app, const std::string& option)
{
    std::vector<std::string> options;
    bool isKnown = option == "--";
    for (const auto* const command : app.get_subcommands({})) {
        appendOptions(options, *command);
        isKnown = isKnown || command->get_option_no_throw(option) != nullptr;
    }
    if (!isKnown) {
        return wrongUse(
            "There is no option " + quotedText(option) + '.' + suggestion(option, options), "");
    }
    return wrongUse("A command is needed before " + quotedText(option) + ": " +
                        enumerated(commandsOf(app)) + '.',
                    "");
}

/// The position of the command in the arguments, or their number without one.
std::size_t commandIn(const CLI::App& app, std::span<const std::string> arguments)
{
    std::size_t position = 0;
    while (position < arguments.size() && isOption(arguments[position]) &&
           app.get_option_no_throw(optionIn(arguments[position])) != nullptr) {
        ++position;
    }
    return position;
}

/// The first option that the command does not have; empty when it has all of them.
std::string unknownOption(const CLI::App& command, std::span<const std::string> arguments)
{
    for (std::size_t i = 0; i < arguments.size() && arguments[i] != "--"; ++i) {
        if (!isOption(arguments[i])) {
            continue;
        }
        auto name = optionIn(arguments[i]);
        const auto* const option = command.get_option_no_throw(name);
        if (option == nullptr) {
            return name;
        }
        const bool takesNext = option->get_items_expected_min() > 0 && name == arguments[i];
        i += takesNext ? 1 : 0;
    }
    return {};
}

}  // namespace

CommandError unknownCommand(const CLI::App& app, std::string_view name)
{
    const auto commands = commandsOf(app);
    const auto suggested = suggestion(name, commands);
    return wrongUse(
        "There is no command " + quotedText(name) + '.' +
            (suggested.empty() ? " A command is needed: " + enumerated(commands) + '.' : suggested),
        "");
}

void insistOnCommand(const CLI::App& app, std::span<const std::string> arguments)
{
    const auto position = commandIn(app, arguments);
    if (position == arguments.size()) {
        return;
    }
    const auto& argument = arguments[position];
    if (isOption(argument)) {
        throw optionBeforeCommand(app, optionIn(argument));
    }
    const auto commands = commandsOf(app);
    if (std::find(commands.begin(), commands.end(), argument) == commands.end()) {
        throw unknownCommand(app, argument);
    }
}

CommandError wrongArguments(const CLI::App& app, std::span<const std::string> arguments,
                            std::string_view reason)
{
    const auto position = commandIn(app, arguments);
    if (position == arguments.size()) {
        return wrongUse(std::string(reason) + '.', "");
    }
    const auto& command = *app.get_subcommand(arguments[position]);
    const auto& name = command.get_name();
    const auto unknown = unknownOption(command, arguments.subspan(position + 1));
    if (unknown.empty()) {
        return wrongUse(std::string(reason) + '.', name);
    }
    std::vector<std::string> options;
    appendOptions(options, command);
    return wrongUse(
        name + " has no option " + quotedText(unknown) + '.' + suggestion(unknown, options), name);
}

}  // namespace dunmora
