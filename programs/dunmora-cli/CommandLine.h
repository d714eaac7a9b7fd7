#pragma once

#include "programs/dunmora-cli/MatchFieldNames.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace dunmora {

enum class OutputFormat { Table, Json, Csv };

/// Which address book to look through and how.
struct BookRequest {
    std::string addressBook;
    /// The match fields of this run; without them the stored preferences count.
    std::optional<MatchFieldChoice> match;
    OutputFormat format = OutputFormat::Table;
    bool quiet = false;
};

/// `dunmora-cli list`
struct ListRequest {
    BookRequest book;
};

/// `dunmora-cli delete`
struct DeleteRequest {
    BookRequest book;
    std::vector<std::string> check;
    std::vector<std::string> uncheck;
    bool keepOne = false;
    bool dryRun = false;
    bool yes = false;
    std::optional<std::filesystem::path> backup;
    bool allowLastCopy = false;
    bool allowBlankMatch = false;
};

/// `dunmora-cli fields`
struct FieldsRequest {
    /// What to store; without it the stored fields are only shown.
    std::optional<MatchFieldChoice> fields;
};

/// `dunmora-cli books`
struct BooksRequest {
    OutputFormat format = OutputFormat::Table;
    bool quiet = false;
};

/// `--help` and `--version`: a text for standard output.
struct PrintRequest {
    std::string text;
};

using Request = std::variant<ListRequest, DeleteRequest, FieldsRequest, BooksRequest, PrintRequest>;

/// How the program is called, in a few lines.
extern const std::string_view kUsage;

/// Reads the program's arguments (its name is not among them).
/// Errors: CommandError (wrong use).
Request parseCommandLine(std::span<const std::string> arguments, const std::string& version);

}  // namespace dunmora
