#pragma once

#include <stdexcept>
#include <string>

namespace dunmora {

/// What the program tells the shell when it ends.
enum class ExitCode {
    Done = 0,
    /// The address book could not be read or saved, or the deletion was refused.
    Failed = 1,
    WrongUse = 2,
};

/// A command that cannot go on: one line for the user and the program's exit code.
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
