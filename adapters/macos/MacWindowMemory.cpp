#include "adapters/macos/MacWindowMemory.h"

#include "adapters/macos/FrameworkCall.h"
#include "adapters/macos/StandardDefaults.h"
#include "platform/PlatformError.h"

namespace dunmora {

namespace {

constexpr std::string_view kStore = "The preferences store of macOS";

}  // namespace

WindowMemory::Texts MacWindowMemory::load(std::string_view window)
{
    Texts texts;
    try {
        callObjectiveC(kStore, [&] { texts = textsOfStandardDefault(window); });
    } catch (const PlatformError&) {
        // The window is as it is at first.
    }
    return texts;
}

void MacWindowMemory::store(std::string_view window, const Texts& texts)
{
    const std::lock_guard guard(mutex_);
    try {
        callObjectiveC(kStore, [&] {
            auto stored = textsOfStandardDefault(window);
            for (const auto& [key, text] : texts) {
                stored.insert_or_assign(key, text);
            }
            setStandardDefault(window, stored);
            synchronizeStandardDefaults();
        });
    } catch (const PlatformError&) {
        // The window has its size all the same, until the program ends.
    }
}

}  // namespace dunmora
