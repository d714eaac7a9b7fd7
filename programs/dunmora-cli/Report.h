#pragma once

#include <string_view>

namespace dunmora {

struct CliEnvironment;

/// Prints one line about the program on standard error, safe for a terminal.
void report(const CliEnvironment& environment, std::string_view text);

/// Prints a text for the user on standard output, in the charset of the user's locale.
/// Errors: as `print`.
void printText(const CliEnvironment& environment, std::string_view text);

/// Prints on standard output and flushes it. A reader who has closed the pipe has seen enough: that
/// is no error, and what the command does does not depend on it.
/// Errors: CommandError when it cannot be written.
void print(const CliEnvironment& environment, std::string_view text);

}  // namespace dunmora
