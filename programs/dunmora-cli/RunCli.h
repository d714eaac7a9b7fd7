#pragma once

#include <span>
#include <string>

namespace dunmora {

struct CliEnvironment;

/// Runs the terminal program with these arguments (its name is not among them) and returns its
/// exit code. Whatever goes wrong is told in a line on standard error.
/// Thread: the main thread. Errors: none.
int runCli(std::span<const std::string> arguments, const CliEnvironment& environment);

}  // namespace dunmora
