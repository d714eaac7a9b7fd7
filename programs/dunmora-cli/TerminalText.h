#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace dunmora {

/// Whether the text is printable ASCII throughout: a terminal may be given it as it is, and each
/// byte takes one column.
bool isPlain(std::string_view text);

/// Appends the text as a terminal may be given it, on one line: control characters become their
/// pictures (U+2400 and on), and what would turn the writing direction, break the line or is no
/// UTF-8 becomes U+FFFD.
void appendPrintable(std::string& out, std::string_view text);

/// The text as `appendPrintable` appends it.
std::string printable(std::string_view text);

/// How many columns of a terminal a printable text takes: wide East Asian characters take two,
/// combining ones none.
std::size_t displayWidth(std::string_view text);

}  // namespace dunmora
