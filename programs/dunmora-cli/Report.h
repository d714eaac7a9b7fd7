#pragma once

#include <string_view>

namespace dunmora {

struct CliEnvironment;

/// Prints one line about the program on standard error, safe for a terminal.
void report(const CliEnvironment& environment, std::string_view text);

/// Prints a text for people, not for programs, on standard output, in the locale's charset.
/// Errors: as `print`.
void printText(const CliEnvironment& environment, std::string_view text);

/// Prints on standard output and flushes it. A reader who has closed the pipe has seen enough: that
/// is no error, and the command does all of its work.
/// Errors: CommandError when it cannot be written.
void print(const CliEnvironment& environment, std::string_view text);

}  // namespace dunmora
