#include "adapters/macos/MacUserDefaults.h"

#include "adapters/macos/FrameworkCall.h"
#include "adapters/macos/StandardDefaults.h"
#include "platform/PlatformError.h"

#include <cstdio>

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
    const bool isStored = call([] { return synchronizeStandardDefaults(); });
    if (!isStored) {
        reportOnce("The preferences were not saved and last until the program ends.");
    }
    return isStored;
}

/// Returns the result of `work`, or false when Objective-C throws.
bool MacUserDefaults::call(const std::function<bool()>& work) const
{
    bool result = false;
    try {
        callObjectiveC("The preferences store of macOS", [&] { result = work(); });
    } catch (const PlatformError& error) {
        reportOnce(error.what());
    }
    return result;
}

void MacUserDefaults::reportOnce(const std::string& message) const
{
    if (failureReported_.exchange(true)) {
        return;
    }
    std::fputs(("dunmora: " + message + "\n").c_str(), stderr);
    if (onFailure_) {
        onFailure_(message);
    }
}

}  // namespace dunmora
