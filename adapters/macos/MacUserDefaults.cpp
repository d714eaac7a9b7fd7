#include "adapters/macos/MacUserDefaults.h"

#include "adapters/macos/FrameworkCall.h"
#include "adapters/macos/StandardDefaults.h"
#include "platform/PlatformError.h"

#include <cstdio>
#include <string>

namespace dunmora {

bool MacUserDefaults::hasValue(std::string_view key) const
{
    return ask([&] { return hasStandardDefault(key); });
}

bool MacUserDefaults::boolForKey(std::string_view key) const
{
    return ask([&] { return boolOfStandardDefault(key); });
}

void MacUserDefaults::setBool(std::string_view key, bool value)
{
    ask([&] {
        setStandardDefault(key, value);
        return true;
    });
}

bool MacUserDefaults::synchronize()
{
    return ask([] { return synchronizeStandardDefaults(); });
}

/// Returns what the work returns, or false when Objective-C throws. Prints the first such error to
/// standard error.
bool MacUserDefaults::ask(const std::function<bool()>& work) const
{
    bool answer = false;
    try {
        callObjectiveC("The store of the preferences", [&] { answer = work(); });
    } catch (const PlatformError& error) {
        std::call_once(errorReported_, [&] {
            std::fputs(("dunmora: " + std::string(error.what()) + "\n").c_str(), stderr);
        });
    }
    return answer;
}

}  // namespace dunmora
