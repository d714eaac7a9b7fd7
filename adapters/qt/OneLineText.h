#pragma once

#include <QString>
#include <QStringList>

#include <limits>
#include <string_view>

namespace dunmora {

/// More of a text than any cell or tip can show.
constexpr std::size_t kMaxShownBytes = 1024;

/// A text of anybody's making as one line that is safe to draw beside others: a line break or a tab
/// is a blank, bytes that are no UTF-8 and other control characters are replacement characters, and
/// nothing changes the direction of what follows. A longer text ends with an ellipsis.
QString oneLineText(std::string_view utf8, std::size_t maxBytes = kMaxShownBytes);

/// These texts as the paragraphs of a tool tip, which shows them as they stand, markup included.
QString toolTipText(const QStringList& paragraphs);

/// Whether the bytes are ASCII characters that can be seen, or blanks.
bool isPlainAscii(std::string_view text);

}  // namespace dunmora
