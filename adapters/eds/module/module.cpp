#include "adapters/eds/ModuleEntry.h"
#include "adapters/eds/module/LibebookService.h"

#include <glib.h>

namespace {

/// The libraries print warnings about unusual cards to standard error, with their content.
void silenceLibraries()
{
    constexpr auto kLevels =
        static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING |
                                    G_LOG_LEVEL_MESSAGE | G_LOG_LEVEL_INFO | G_LOG_LEVEL_DEBUG);
    for (const char* const library : {"libebook", "libebook-contacts", "libedataserver"}) {
        g_log_set_handler(
            library, kLevels,
            [](const char* /*library*/, GLogLevelFlags /*level*/, const char* /*text*/,
               void* /*unused*/) {},
            nullptr);
    }
}

}  // namespace

extern "C" __attribute__((visibility("default"))) dunmora::ContactService*
dunmoraMakeContactService()
{
    static const bool kAreSilent = [] {
        silenceLibraries();
        return true;
    }();
    static_cast<void>(kAreSilent);
    return new dunmora::LibebookService;
}
