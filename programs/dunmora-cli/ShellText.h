#pragma once

#include "programs/dunmora-cli/Charset.h"

#include <string>
#include <string_view>

namespace dunmora {

/// The text as one word for a shell (POSIX). Nothing in it changes the line on a terminal: bytes of
/// characters that would, or that the charset does not have, are written as $'\x1b', which Bash,
/// Zsh and recent POSIX shells know. Thread: any. Errors: none.
std::string quotedForShell(std::string_view text, const Charset& charset = {});

}  // namespace dunmora
