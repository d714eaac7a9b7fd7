#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace dunmora {

/// Lets the user choose where to save a new vCard file.
class SavePanel {
public:
    virtual ~SavePanel() = default;

    /// Shows the panel and returns the path chosen, at which there is no file yet; none when
    /// cancelled. `name` is the name proposed. The panel starts in `folder`, or where it sees fit
    /// if that is empty or does not exist. Thread: the main thread; blocks, but events are still
    /// handled. Errors: none.
    virtual std::optional<std::filesystem::path> runModal(const std::string& name,
                                                          const std::filesystem::path& folder) = 0;
};

}  // namespace dunmora
