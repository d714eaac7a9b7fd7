#pragma once

#include <string>
#include <string_view>

namespace dunmora {

/// The title of a window: what it shows, then the program's name. Every window uses the same dash.
inline std::string windowTitle(std::string_view subject, std::string_view program)
{
    return std::string(subject) + " – " + std::string(program);
}

}  // namespace dunmora
