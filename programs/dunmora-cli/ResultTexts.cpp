#include "programs/dunmora-cli/ResultTexts.h"

#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/Report.h"

namespace dunmora {

void printAs(const CliEnvironment& environment, OutputFormat format, const ResultTexts& texts)
{
    const bool isTerminal = environment.outIsTerminal;
    switch (format) {
    case OutputFormat::Table:
        printText(environment, texts.table());
        break;
    case OutputFormat::Json:
        print(environment, texts.json(isTerminal ? JsonCharacters::Ascii : JsonCharacters::Utf8));
        break;
    case OutputFormat::Csv:
        print(environment, texts.csv(isTerminal ? CsvTexts::Printable : CsvTexts::AsTheyAre));
        break;
    }
}

}  // namespace dunmora
