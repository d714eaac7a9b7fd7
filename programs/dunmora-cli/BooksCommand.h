#pragma once

#include "programs/dunmora-cli/CommandError.h"

namespace dunmora {

struct BooksRequest;
struct CliEnvironment;

/// Lists the desktop's address books, including those that could not be read, and reports why.
/// With `namesOnly` it reads none of them.
/// Errors: PlatformError when the desktop cannot be reached, CommandError.
ExitCode listBooks(const BooksRequest& request, const CliEnvironment& environment);

}  // namespace dunmora
