#pragma once

#include <stdexcept>
#include <string>

namespace dunmora {

/// The exit codes of the program.
enum class ExitCode {
    Done = 0,
    /// The address book could not be read or saved, or the deletion was refused.
    Failed = 1,
    WrongUse = 2,
    /// There are duplicates, and the user wants that to count as a failure.
    Found = 3,
};

/// An error that ends a command: one line for the user, and the exit code.
class CommandError final : public std::runtime_error {
public:
    CommandError(ExitCode exitCode, const std::string& text)
        : std::runtime_error(text), exitCode_(exitCode)
    {
    }

    ExitCode exitCode() const { return exitCode_; }

private:
    ExitCode exitCode_;
};

}  // namespace dunmora
