#pragma once

#include "platform/OpenedBook.h"

#include <string>
#include <string_view>

namespace dunmora {

struct BookRequest;
struct CliEnvironment;

/// What stands for standard input on the command line.
inline constexpr std::string_view kStandardInput = "-";

/// What messages call the address book with this name.
std::string shownBookName(const std::string& addressBook);

/// Opens the address book that the user named, to be read only: "-" is standard input. Reports what
/// is expected there when it is a terminal, where the program would seem to hang.
/// Errors: PlatformError when there can be no such book.
OpenedBook openForReading(const BookRequest& request, const CliEnvironment& environment);

/// Reports on a terminal that it has to be typed in, such as "vCards", unless `quiet`.
void reportExpectedInput(std::string_view what, bool quiet, const CliEnvironment& environment);

}  // namespace dunmora
