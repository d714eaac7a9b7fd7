#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace dunmora {

/// The text without what a search does not tell apart: upper and lower case, and characters that
/// Unicode calls compatible (composed or not, of full width or half).
QString foldedText(const QString& text);

/// Appends the text in lower case and returns true, or returns false where it is not plain ASCII;
/// what was appended by then is of no use. For plain ASCII it says the same as `foldedText`.
bool appendFoldedAscii(std::string& folded, std::string_view text);

/// The ASCII of a folded text; empty when there is anything else in it.
std::string asciiOf(const QString& folded);

}  // namespace dunmora
