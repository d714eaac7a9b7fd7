#include "text/Counted.h"

namespace dunmora {

std::string counted(std::size_t count, std::string_view one, std::string_view several)
{
    auto text = std::to_string(count);
    text += ' ';
    text += count == 1 ? one : several;
    return text;
}

std::string countOfPeople(std::size_t count)
{
    return counted(count, "person", "people");
}

}  // namespace dunmora
