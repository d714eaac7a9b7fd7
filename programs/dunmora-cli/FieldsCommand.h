#pragma once

#include "programs/dunmora-cli/CommandError.h"

namespace dunmora {

struct CliEnvironment;
struct FieldsRequest;

/// Stores the match fields of the preferences, if any are given, and shows what is stored.
/// Errors: CommandError.
ExitCode showOrStoreFields(const FieldsRequest& request, const CliEnvironment& environment);

}  // namespace dunmora
