#pragma once

#include "programs/dunmora-cli/ContactCsv.h"
#include "programs/dunmora-cli/JsonText.h"
#include "programs/dunmora-cli/OutputFormat.h"

#include <functional>
#include <string>

namespace dunmora {

class TextPieces;
struct CliEnvironment;

/// Creates the text of a command's result in each format that the command offers.
struct ResultTexts {
    std::function<std::string()> table;
    std::function<std::string(JsonCharacters)> json;
    /// Null for a command without this format.
    std::function<std::string(CsvTexts)> csv = nullptr;
};

/// Creates the text in this format and prints it; on a terminal JSON and CSV are printable, too.
/// Errors: CommandError when it cannot be written.
void printAs(const CliEnvironment& environment, OutputFormat format, const ResultTexts& texts);

/// The same for results that are printed while they are created.
struct ResultPieces {
    std::function<void(TextPieces&)> table;
    std::function<void(TextPieces&, JsonCharacters)> json;
    std::function<void(TextPieces&, CsvTexts)> csv;
};

/// Creates the text in this format as `printAs` does, and prints it in pieces.
/// Errors: CommandError when it cannot be written; some of it may already be printed, as when a
/// function throws.
void printPiecesAs(const CliEnvironment& environment, OutputFormat format,
                   const ResultPieces& pieces);

}  // namespace dunmora
