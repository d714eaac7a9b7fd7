#pragma once

#include <span>
#include <string>

namespace dunmora {

struct CliEnvironment;

/// Runs the terminal program with these arguments (without its name) and returns its exit code.
/// Reports an error in one line on standard error.
/// Thread: the main thread. Errors: none.
int runCli(std::span<const std::string> arguments, const CliEnvironment& environment);

}  // namespace dunmora
