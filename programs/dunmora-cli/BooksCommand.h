#pragma once

#include "programs/dunmora-cli/CommandError.h"

namespace dunmora {

struct BooksRequest;
struct CliEnvironment;

/// Lists the address books that the user's desktop keeps. Those that could not be read are listed,
/// too, and the user is told why.
/// Errors: PlatformError when the desktop cannot be asked, CommandError.
ExitCode listBooks(const BooksRequest& request, const CliEnvironment& environment);

}  // namespace dunmora
