#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

/// Splits UTF-8 text into cards, each from its BEGIN line to its END line, in the simplest way. A
/// card inside an AGENT belongs to the outer card; a card without END is omitted.
std::vector<std::string> splitCards(std::string_view text);

}  // namespace dunmora::test
