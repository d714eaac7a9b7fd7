#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace dunmora {

// The texts must be safe to display. East Asian wide characters take two columns of a terminal,
// combining characters none. Nothing depends on the user's locale.
// Thread: any. Errors: none.

/// The number of terminal columns of a text.
std::size_t displayWidth(std::string_view text);

/// The longest beginning that fits the columns, with the combining characters of its last
/// character; at least one character unless the text is empty.
std::string_view beginningThatFits(std::string_view text, std::size_t columns);

/// The same, ending before a space where there is one. `text` becomes the rest, without that space.
std::string_view takeLine(std::string_view& text, std::size_t columns);

/// The text, its end replaced by an ellipsis when it is wider than the columns, which are two or
/// more.
std::string withoutEnd(std::string_view text, std::size_t columns);

/// The text, its beginning replaced by an ellipsis when it is wider than the columns, which are two
/// or more.
std::string withoutBeginning(std::string_view text, std::size_t columns);

}  // namespace dunmora
