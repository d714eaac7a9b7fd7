#include "programs/dunmora-cli/TableStyle.h"

#include "programs/dunmora-cli/CliEnvironment.h"

namespace dunmora {

namespace {

TableStyle styleOf(bool isTerminal, std::size_t columns, const CliEnvironment& environment,
                   TableWidth width, MatchFieldChoice match)
{
    TableStyle style;
    style.colour = isTerminal && environment.wantsColour ? Colour::On : Colour::Off;
    if (isTerminal && width == TableWidth::Fits) {
        style.width = columns;
    }
    style.match = match;
    return style;
}

}  // namespace

TableStyle outputStyle(const CliEnvironment& environment, TableWidth width, MatchFieldChoice match)
{
    return styleOf(environment.outIsTerminal, environment.outColumns, environment, width, match);
}

TableStyle errorStyle(const CliEnvironment& environment, TableWidth width, MatchFieldChoice match)
{
    return styleOf(environment.errIsTerminal, environment.errColumns, environment, width, match);
}

}  // namespace dunmora
