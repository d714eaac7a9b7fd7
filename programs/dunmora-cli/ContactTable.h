#pragma once

#include <span>
#include <string>
#include <vector>

namespace dunmora {

class ContactsParser;

enum class Colour { Off, On };

/// People by their uids.
using UidSpan = std::span<const std::string>;

/// A table for a terminal: a line of titles, a line per person, an empty line between blocks; check
/// marks as "[x]" and "[ ]", times in local time. Wide cells are not truncated. All text is safe to
/// display. Empty when there are no blocks.
std::string contactTable(const ContactsParser& engine, const std::vector<UidSpan>& blocks,
                         Colour colour);

}  // namespace dunmora
