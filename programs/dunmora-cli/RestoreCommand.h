#pragma once

#include "programs/dunmora-cli/CommandError.h"

#include <string>

namespace dunmora {

class Charset;
struct CliEnvironment;
struct RestoreRequest;

/// Puts the people of a backup back into an address book after the user has agreed.
/// Errors: PlatformError, CommandError.
ExitCode restorePeople(const RestoreRequest& request, const CliEnvironment& environment);

/// The command that does this, to be typed into a shell.
std::string restoreCommand(const std::string& backup, const std::string& addressBook,
                           const Charset& charset);

}  // namespace dunmora
