#pragma once

#include "adapters/defaults/IniDocument.h"
#include "adapters/posix/LockedFile.h"

#include <chrono>
#include <filesystem>
#include <functional>

namespace dunmora {

/// An INI file that several programs and the user share. A file that cannot be read, is larger than
/// 1 MiB or is not an INI file is never changed.
///
/// Thread: any, several at once. Errors: PlatformError.
class IniFile final {
public:
    /// A change fails when another program keeps the file locked for this long.
    explicit IniFile(std::filesystem::path file,
                     std::chrono::milliseconds lockTimeout = std::chrono::seconds(1));

    /// The current file; an empty document when it is missing. Blocks on the disk.
    IniDocument load() const;

    /// Changes the current file under a lock, and creates a missing one with its folders. `edit`
    /// returns whether it has changed the document; it is called again when another program changes
    /// the file meanwhile. After an error the file is unchanged. Blocks on the disk.
    void change(const std::function<bool(IniDocument& document)>& edit) const;

private:
    using Edit = std::function<bool(IniDocument& document)>;
    void change(LockedFile file, const LockedFile::TryAgain& tryAgain, const Edit& edit) const;

    std::filesystem::path file_;
    std::chrono::milliseconds lockTimeout_;
};

}  // namespace dunmora
