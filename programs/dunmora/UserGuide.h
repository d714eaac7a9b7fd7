#pragma once

#include <filesystem>
#include <string>

namespace dunmora {

/// The guide for users: pages of HTML that are installed with the program.
///
/// Thread: the main thread.
class UserGuide final {
public:
    /// `programFolder` is the folder of the running program, with an absolute path, and `installed`
    /// the folder of an installed guide, relative to that of an installed program. A program that
    /// is not installed has its guide in the folder "guide" beside it.
    UserGuide(const std::filesystem::path& programFolder, const std::filesystem::path& installed);

    /// Opens the first page in the user's browser. An alert reports that there is no guide, or no
    /// browser; until it is closed, this does nothing. Errors: none.
    void open();

private:
    std::string failureToOpen() const;

    std::filesystem::path installed_;
    std::filesystem::path besideProgram_;
    bool isReporting_ = false;
};

}  // namespace dunmora
