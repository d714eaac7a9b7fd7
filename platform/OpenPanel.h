#pragma once

#include <filesystem>
#include <optional>

namespace dunmora {

/// Lets the user choose an address book.
class OpenPanel {
public:
    virtual ~OpenPanel() = default;

    /// Shows the panel and waits for the choice: a vCard file or a folder; none when cancelled.
    /// Thread: the main thread, whose events go on meanwhile. Errors: none.
    virtual std::optional<std::filesystem::path> runModal() = 0;
};

}  // namespace dunmora
