#pragma once

#include "programs/dunmora-cli/CommandError.h"

namespace dunmora {

struct CliEnvironment;
struct DiffRequest;
struct ShowRequest;

/// Runs `dunmora-cli show`: prints the whole cards of some people.
/// Errors: PlatformError, CommandError.
ExitCode showCards(const ShowRequest& request, const CliEnvironment& environment);

/// Runs `dunmora-cli diff`: prints what each of two people has that the other one does not have.
/// Errors: PlatformError, CommandError.
ExitCode showDifferences(const DiffRequest& request, const CliEnvironment& environment);

}  // namespace dunmora
