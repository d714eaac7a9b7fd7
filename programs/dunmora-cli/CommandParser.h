#pragma once

#include "programs/dunmora-cli/CommandLine.h"

#include <CLI/CLI.hpp>

#include <span>
#include <string>
#include <vector>

namespace dunmora {

/// The commands of the program with their options and their help, and the values that were given.
/// Thread: one at a time.
class CommandParser final {
public:
    /// `version` is the whole line to print; `systemBookHelp` as in `parseCommandLine`.
    CommandParser(const std::string& version, const std::string& systemBookHelp);
    ~CommandParser() = default;
    // The options refer to the values.
    CommandParser(const CommandParser&) = delete;
    CommandParser& operator=(const CommandParser&) = delete;

    /// Parses the program's arguments (without its name). To be called once.
    /// Errors: CommandError (wrong use); CLI::Success when only a text is asked for.
    void parse(std::span<const std::string> arguments);

    /// The command of the last parsing.
    const CLI::App& command() const { return *app_.get_subcommands().front(); }
    /// Whether it is the one with this name.
    bool isCommand(const std::string& name) const { return app_.got_subcommand(name); }
    /// Whether the command has this option or argument and it was given.
    bool wasGiven(const std::string& option) const;

    /// The help of the command that `parse` met, or of the program.
    std::string help() const { return app_.help(); }
    /// The help of the command with this name; of the program when it is empty.
    /// Errors: CommandError (wrong use) when there is no such command.
    std::string helpOf(const std::string& name) const;

    // A value is used only when its option was given.

    BookRequest book;
    bool failIfFound = false;
    bool namesOnly = false;
    DeleteRequest deletion;
    RestoreRequest restoration;
    std::vector<std::string> uids;
    std::string match;
    std::string backup;
    std::string fields;
    std::string helpedCommand;

private:
    CLI::App& addCommand(const std::string& name, const std::string& description,
                         const std::string& version, const std::string& examples);
    void addFormatOption(CLI::App& command, std::span<const OutputFormat> formats);
    void addQuietOption(CLI::App& command);
    void addWideOption(CLI::App& command);
    void addBookArgument(CLI::App& command, const std::string& bookHelp);
    void addBookOptions(CLI::App& command, std::span<const OutputFormat> formats,
                        const std::string& bookHelp);
    void addCardOptions(CLI::App& command, int people, const std::string& bookHelp);
    void addDeleteOptions(CLI::App& command);
    void addRestoreOptions(CLI::App& command, const std::string& bookHelp);

    CLI::App app_;
};

}  // namespace dunmora
