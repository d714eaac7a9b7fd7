#pragma once

#include "programs/dunmora-cli/CommandError.h"

#include <CLI/CLI.hpp>

#include <span>
#include <string>
#include <string_view>

namespace dunmora {

// What is wrong with the program's arguments, in sentences for the user that name the help to read.
// Thread: any.

/// The error about a command that does not exist; it suggests one with a similar name.
CommandError unknownCommand(const CLI::App& app, std::string_view name);

/// Errors: CommandError (wrong use) when the arguments do not begin with a command, or with an
/// option that needs none.
void insistOnCommand(const CLI::App& app, std::span<const std::string> arguments);

/// The error about arguments whose command exists but that could not be parsed for this reason. An
/// option that the command does not have is blamed first: what follows it may be its value.
CommandError wrongArguments(const CLI::App& app, std::span<const std::string> arguments,
                            std::string_view reason);

}  // namespace dunmora
