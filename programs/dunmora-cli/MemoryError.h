#pragma once

#include "programs/dunmora-cli/CommandError.h"
#include "review/ReviewTexts.h"

#include <new>
#include <string_view>

namespace dunmora {

/// Does this work on an address book. A lack of memory becomes a CommandError that names the book.
template <typename Work>
auto namingBookInMemoryErrors(std::string_view book, const Work& work)
{
    try {
        return work();
    } catch (const std::bad_alloc&) {
        throw CommandError(ExitCode::Failed, notEnoughMemoryText(book));
    }
}

}  // namespace dunmora
