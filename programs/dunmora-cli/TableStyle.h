#pragma once

#include "base/ContactFields.h"

#include <cstddef>
#include <optional>

namespace dunmora {

struct CliEnvironment;

enum class Colour { Off, On };

/// How a table looks.
struct TableStyle {
    Colour colour = Colour::Off;
    /// The columns of the terminal that the table has to fit; nullopt for a table that shows
    /// everything, however wide.
    std::optional<std::size_t> width = std::nullopt;
    /// The fields whose values are not cut to make the table fit.
    MatchFieldChoice match = {};
};

/// Whether a table may leave something out to fit a terminal.
enum class TableWidth { Fits, Wide };

/// How a table with these match fields looks on standard output.
TableStyle outputStyle(const CliEnvironment& environment, TableWidth width, MatchFieldChoice match);

/// The same on standard error.
TableStyle errorStyle(const CliEnvironment& environment, TableWidth width, MatchFieldChoice match);

}  // namespace dunmora
