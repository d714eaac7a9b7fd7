#pragma once

#include <string>
#include <string_view>

namespace dunmora {

/// How a command prints its result.
enum class OutputFormat { Table, Json, Csv };

/// The format's name on the command line.
std::string formatName(OutputFormat format);

/// The format with this name, which must exist.
OutputFormat formatNamed(std::string_view name);

}  // namespace dunmora
