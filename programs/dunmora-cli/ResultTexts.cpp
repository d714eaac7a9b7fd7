#include "programs/dunmora-cli/ResultTexts.h"

#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/Report.h"
#include "programs/dunmora-cli/TextPieces.h"

#include <string_view>

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

void printPiecesAs(const CliEnvironment& environment, OutputFormat format,
                   const ResultPieces& pieces)
{
    const bool isTerminal = environment.outIsTerminal;
    TextPieces out([&](std::string_view piece) {
        if (format == OutputFormat::Table) {
            printText(environment, piece);
        } else {
            print(environment, piece);
        }
    });
    switch (format) {
    case OutputFormat::Table:
        pieces.table(out);
        break;
    case OutputFormat::Json:
        pieces.json(out, isTerminal ? JsonCharacters::Ascii : JsonCharacters::Utf8);
        break;
    case OutputFormat::Csv:
        pieces.csv(out, isTerminal ? CsvTexts::Printable : CsvTexts::AsTheyAre);
        break;
    }
    out.printRest();
}

}  // namespace dunmora
