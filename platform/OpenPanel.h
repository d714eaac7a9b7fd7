#pragma once

#include <filesystem>
#include <optional>

namespace dunmora {

/// Lets the user choose an address book.
class OpenPanel {
public:
    /// What the user is looking for.
    enum class Kind { File, Folder };

    virtual ~OpenPanel() = default;

    /// Shows the panel and returns the vCard file or folder chosen; none when cancelled. A panel
    /// for files may let the user choose a folder, too. It starts in `folder`, or where it sees fit
    /// if that is empty or does not exist.
    /// Thread: the main thread; blocks, but events are still handled. Errors: none.
    virtual std::optional<std::filesystem::path> runModal(Kind kind,
                                                          const std::filesystem::path& folder) = 0;
};

}  // namespace dunmora
