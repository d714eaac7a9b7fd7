#pragma once

#include <string>
#include <string_view>

namespace dunmora {

class TextFolding;

/// Appends the text as the window shows it (`windowText`), folded for a search. Plain ASCII, which
/// most names and numbers are, does not go through the port.
///
/// Thread: the main thread. Errors: none.
void appendFolded(std::string& out, std::string_view text, const TextFolding& folding);

}  // namespace dunmora
