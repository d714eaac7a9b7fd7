#include "adapters/macos/MacUserDefaults.h"

#include "adapters/macos/FrameworkCall.h"
#include "adapters/macos/StandardDefaults.h"
#include "platform/PlatformError.h"

#include <cstdio>
#include <string>

namespace dunmora {

bool MacUserDefaults::hasValue(std::string_view key) const
{
    return call([&] { return hasStandardDefault(key); });
}

bool MacUserDefaults::boolForKey(std::string_view key) const
{
    return call([&] { return boolOfStandardDefault(key); });
}

void MacUserDefaults::setBool(std::string_view key, bool value)
{
    call([&] {
        setStandardDefault(key, value);
        return true;
    });
}

bool MacUserDefaults::synchronize()
{
    return call([] { return synchronizeStandardDefaults(); });
}

/// Returns the result of `work`, or false when Objective-C throws. Prints the first such error to
/// standard error.
bool MacUserDefaults::call(const std::function<bool()>& work) const
{
    bool result = false;
    try {
        callObjectiveC("The preferences store of macOS", [&] { result = work(); });
    } catch (const PlatformError& error) {
        std::call_once(errorReported_, [&] {
            std::fputs(("dunmora: " + std::string(error.what()) + "\n").c_str(), stderr);
        });
    }
    return result;
}

}  // namespace dunmora
