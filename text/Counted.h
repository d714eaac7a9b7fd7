#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace dunmora {

/// How a sentence writes a number.
using NumberText = std::string (*)(std::size_t number);

/// The digits alone: "12345".
std::string plainNumber(std::size_t number);

/// The count and the matching form of the words: "1 card was skipped", "2 cards were skipped".
/// Thread: any. Errors: none.
std::string counted(std::size_t count, std::string_view one, std::string_view several,
                    NumberText number = plainNumber);

/// "1 person", "2 people".
std::string countOfPeople(std::size_t count, NumberText number = plainNumber);

}  // namespace dunmora
