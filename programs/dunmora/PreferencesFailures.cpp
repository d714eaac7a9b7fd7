#include "programs/dunmora/PreferencesFailures.h"

#include "platform/Application.h"
#include "programs/dunmora/FailureText.h"

#include <system_error>
#include <utility>

namespace dunmora {

void PreferencesFailures::report(const std::string& message)
{
    if (!isLaunched_) {
        kept_.push_back(message);
        return;
    }
    if (std::this_thread::get_id() != mainThread_) {
        showFailure(message);
        return;
    }
    try {
        application_.detachNewThread("ShowFailure", [message] { showFailure(message); });
    } catch (const std::system_error&) {
        // The message is on standard error, too.
    }
}

void PreferencesFailures::showAtLaunch()
{
    isLaunched_ = true;
    for (const auto& message : std::exchange(kept_, {})) {
        showFailure(message);
    }
}

}  // namespace dunmora
