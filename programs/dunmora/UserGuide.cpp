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

void UserGuide::open() const
{
    for (const auto* const page : {&installed_, &besideProgram_}) {
        std::error_code error;
        if (!std::filesystem::is_regular_file(*page, error)) {
            continue;
        }
        if (!Platform::current().workspace.openLocalPage(*page)) {
            showFailure(quotedPath(*page) + " cannot be opened: no web browser could be started.");
        }
        return;
    }
    showFailure("The user guide is not installed. It would be in " +
                quotedPath(installed_.parent_path()) + ".");
}

}  // namespace dunmora
