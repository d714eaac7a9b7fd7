#include "text/Counted.h"

namespace dunmora {

std::string plainNumber(std::size_t number)
{
    return std::to_string(number);
}

std::string counted(std::size_t count, std::string_view one, std::string_view several,
                    NumberText number)
{
    auto text = number(count);
    text += ' ';
    text += count == 1 ? one : several;
    return text;
}

std::string countOfPeople(std::size_t count, NumberText number)
{
    return counted(count, "person", "people", number);
}

}  // namespace dunmora
