#pragma once

#include "programs/dunmora-cli/CommandError.h"

namespace dunmora {

struct CliEnvironment;
struct DeleteRequest;

/// Deletes the checked people of an address book after the user has agreed.
/// Errors: PlatformError, CommandError.
ExitCode deletePeople(const DeleteRequest& request, const CliEnvironment& environment);

}  // namespace dunmora
