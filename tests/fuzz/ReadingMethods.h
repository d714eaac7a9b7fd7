#pragma once

#include <string>
#include <string_view>

namespace dunmora::test {

/// Reads the cards of a text in every way that the reader has, which must all find the same: with
/// ordinary lines read in one step, as for users, with every line read like the unusual ones, and
/// in pieces that end at BEGIN lines or anywhere. Also reads only the properties with some names,
/// which must be those among all. Returns what differs, empty when nothing does.
std::string differenceOfMethods(std::string_view text);

}  // namespace dunmora::test
