#include "programs/dunmora-cli/Report.h"

#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/CommandError.h"
#include "text/DisplayText.h"

#include <cerrno>
#include <ostream>

namespace dunmora {

void report(const CliEnvironment& environment, std::string_view text)
{
    std::string line = "dunmora-cli: ";
    appendDisplayText(line, text);
    line += '\n';
    environment.err << line << std::flush;
}

void printText(const CliEnvironment& environment, std::string_view text)
{
    print(environment, environment.charset.encoded(text));
}

void print(const CliEnvironment& environment, std::string_view text)
{
    errno = 0;
    environment.out << text << std::flush;
    if (environment.out) {
        return;
    }
    if (errno != EPIPE) {
        throw CommandError(ExitCode::Failed, "The output could not be written.");
    }
    environment.out.clear();
}

}  // namespace dunmora
