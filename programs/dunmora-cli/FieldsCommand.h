#pragma once

#include "programs/dunmora-cli/CommandError.h"

namespace dunmora {

struct CliEnvironment;
struct FieldsRequest;

/// Stores the match fields, if any are given, and shows the stored ones.
/// Errors: CommandError.
ExitCode showOrStoreFields(const FieldsRequest& request, const CliEnvironment& environment);

}  // namespace dunmora
