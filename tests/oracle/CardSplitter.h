#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

/// The cards of a UTF-8 text, each from its BEGIN line to its END line, found line by line in the
/// plainest way. A card inside an AGENT belongs to the card around it; one without END is left out.
std::vector<std::string> splitCards(std::string_view text);

}  // namespace dunmora::test
