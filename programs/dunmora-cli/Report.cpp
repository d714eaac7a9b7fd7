#include "programs/dunmora-cli/Report.h"

#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/CommandError.h"
#include "programs/dunmora-cli/TerminalText.h"

#include <ostream>

namespace dunmora {

void report(const CliEnvironment& environment, std::string_view text)
{
    std::string line = "dunmora-cli: ";
    appendPrintable(line, text);
    line += '\n';
    environment.err << line << std::flush;
}

void print(const CliEnvironment& environment, std::string_view text)
{
    environment.out << text << std::flush;
    if (!environment.out) {
        throw CommandError(ExitCode::Failed, "The output could not be written.");
    }
}

std::string countOfPeople(std::size_t count)
{
    return std::to_string(count) + (count == 1 ? " person" : " people");
}

}  // namespace dunmora
