#pragma once

#include "platform/OpenedBook.h"

#include <string_view>

namespace dunmora {

/// Opens the vCards of standard input as an address book that can only be read; nothing is read
/// yet. The program opens it by this name, which is the address of its people's source.
/// Thread: any. Errors: none.
OpenedBook openStandardInput(std::string_view name);

}  // namespace dunmora
