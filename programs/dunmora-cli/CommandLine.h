#pragma once

#include "programs/dunmora-cli/MatchFieldNames.h"
#include "programs/dunmora-cli/OutputFormat.h"
#include "programs/dunmora-cli/TableStyle.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace dunmora {

/// Which address book to search, and how.
struct BookRequest {
    /// "-" is standard input, for a command that only reads.
    std::string addressBook;
    /// The match fields of this run; nullopt for those of the stored preferences.
    std::optional<MatchFieldChoice> match;
    OutputFormat format = OutputFormat::Table;
    bool quiet = false;
    TableWidth width = TableWidth::Fits;
};

/// `dunmora-cli list`
struct ListRequest {
    BookRequest book;
    bool failIfFound = false;
};

/// `dunmora-cli delete`
struct DeleteRequest {
    BookRequest book;
    std::vector<std::string> check;
    std::vector<std::string> uncheck;
    /// Files with more of them, one uid per line; at most one is "-", standard input.
    std::vector<std::string> checkFrom;
    std::vector<std::string> uncheckFrom;
    bool keepOne = false;
    bool dryRun = false;
    bool yes = false;
    std::optional<std::filesystem::path> backup;
    bool allowLastCopy = false;
    bool allowBlankMatch = false;
};

/// `dunmora-cli restore`
struct RestoreRequest {
    std::filesystem::path backup;
    std::string addressBook;
    bool dryRun = false;
    bool yes = false;
    OutputFormat format = OutputFormat::Table;
    bool quiet = false;
};

/// `dunmora-cli show`
struct ShowRequest {
    BookRequest book;
    std::vector<std::string> uids;
};

/// `dunmora-cli diff`
struct DiffRequest {
    BookRequest book;
    /// Two.
    std::vector<std::string> uids;
};

/// `dunmora-cli fields`
struct FieldsRequest {
    /// The fields to store; nullopt only shows the stored ones.
    std::optional<MatchFieldChoice> fields;
};

/// `dunmora-cli books`
struct BooksRequest {
    OutputFormat format = OutputFormat::Table;
    bool quiet = false;
    TableWidth width = TableWidth::Fits;
    /// Whether to read none of the books.
    bool namesOnly = false;
};

/// `--help` and `--version`: a text for standard output.
struct PrintRequest {
    std::string text;
};

using Request = std::variant<ListRequest, DeleteRequest, RestoreRequest, ShowRequest, DiffRequest,
                             FieldsRequest, BooksRequest, PrintRequest>;

/// A short summary of the commands and options.
extern const std::string_view kUsage;

/// Parses the program's arguments (without its name). `systemBookHelp` lists the names that open
/// address books of the system, for the help.
/// Errors: CommandError (wrong use).
Request parseCommandLine(std::span<const std::string> arguments, const std::string& version,
                         const std::string& systemBookHelp);

}  // namespace dunmora
