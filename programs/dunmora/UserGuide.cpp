#include "programs/dunmora/UserGuide.h"

#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "programs/dunmora/FailureText.h"
#include "text/DisplayText.h"

#include <system_error>

namespace dunmora {

namespace {

constexpr auto kFirstPage = "index.html";

}  // namespace

UserGuide::UserGuide(const std::filesystem::path& programFolder,
                     const std::filesystem::path& installed)
    : installed_((programFolder / installed).lexically_normal() / kFirstPage),
      besideProgram_(programFolder / "guide" / kFirstPage)
{
}

void UserGuide::open()
{
    // The command works in every window, so also in the alert.
    if (isReporting_) {
        return;
    }
    if (const auto failure = failureToOpen(); !failure.empty()) {
        isReporting_ = true;
        showFailure(failure);
        isReporting_ = false;
    }
}

/// Opens the first page. Returns a sentence if that failed, otherwise an empty text.
std::string UserGuide::failureToOpen() const
{
    for (const auto* const page : {&installed_, &besideProgram_}) {
        std::error_code error;
        if (!std::filesystem::is_regular_file(*page, error)) {
            continue;
        }
        return Platform::current().workspace.openLocalPage(*page)
                   ? ""
                   : quotedPath(*page) + " cannot be opened: no web browser could be started.";
    }
    return "The user guide is not installed. It would be in " +
           quotedPath(installed_.parent_path()) + ".";
}

}  // namespace dunmora
