#include "engine/SafeString.h"

namespace dunmora {

std::string_view SafeString(std::optional<std::string_view> text)
{
    return text.value_or(std::string_view(""));
}

}  // namespace dunmora
