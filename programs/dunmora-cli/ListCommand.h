#pragma once

#include "programs/dunmora-cli/CommandError.h"

namespace dunmora {

struct CliEnvironment;
struct ListRequest;

/// Shows the duplicates of an address book with the check marks that the engine proposes.
/// Errors: PlatformError, CommandError.
ExitCode listDuplicates(const ListRequest& request, const CliEnvironment& environment);

}  // namespace dunmora
