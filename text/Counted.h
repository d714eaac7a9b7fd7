#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace dunmora {

/// The count and the matching form of the words: "1 card was skipped", "2 cards were skipped".
/// Thread: any. Errors: none.
std::string counted(std::size_t count, std::string_view one, std::string_view several);

/// "1 person", "2 people".
std::string countOfPeople(std::size_t count);

}  // namespace dunmora
