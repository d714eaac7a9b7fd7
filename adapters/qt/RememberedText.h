#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

// Texts of a `WindowMemory`, which the user and other programs can change: whatever is not written
// as we write it, or is far larger than any screen, is ignored.
// Thread: any. Errors: none.

/// Whole numbers with blanks between them: "1280 800".
std::string numbersText(std::span<const int> numbers);

/// The numbers of such a text; nullopt unless there are so many of them.
std::optional<std::vector<int>> numbersIn(std::string_view text, std::size_t count);

/// Widths in pixels, by the columns' identifiers.
using ColumnWidths = std::map<std::string, int, std::less<>>;

/// Widths with the columns' identifiers: "fname:120 lname:140".
std::string widthsText(const ColumnWidths& widths);

/// The widths of such a text that have an identifier and are greater than 0.
ColumnWidths widthsIn(std::string_view text);

}  // namespace dunmora
