#pragma once

#include <filesystem>
#include <optional>

namespace dunmora {

/// Lets the user choose an address book.
class OpenPanel {
public:
    virtual ~OpenPanel() = default;

    /// Shows the panel and returns the vCard file or folder chosen; none when cancelled.
    /// Thread: the main thread; blocks, but events are still handled. Errors: none.
    virtual std::optional<std::filesystem::path> runModal() = 0;
};

}  // namespace dunmora
