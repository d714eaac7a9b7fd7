#pragma once

#include <span>
#include <string>
#include <vector>

namespace dunmora {

class ContactsParser;

enum class Colour { Off, On };

/// People by their uids.
using UidSpan = std::span<const std::string>;

/// A table for people to read: a line of titles, a line a person, blocks apart by an empty line;
/// check marks as "[x]" and "[ ]", times in local time. A cell that is wider than most is shown
/// whole all the same. Nothing in it can harm a terminal. Empty when there is no block.
std::string contactTable(const ContactsParser& engine, const std::vector<UidSpan>& blocks,
                         Colour colour);

/// "7 duplicates of 120", with a line end.
std::string totalLine(const ContactsParser& engine);

}  // namespace dunmora
