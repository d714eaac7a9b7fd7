#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace dunmora {

struct CliEnvironment;

/// Prints one line about the program on standard error, safe for a terminal.
void report(const CliEnvironment& environment, std::string_view text);

/// Prints on standard output and makes sure that it has got there.
/// Errors: CommandError when it cannot be written.
void print(const CliEnvironment& environment, std::string_view text);

/// "1 person", "2 people".
std::string countOfPeople(std::size_t count);

}  // namespace dunmora
