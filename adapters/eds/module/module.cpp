#include "adapters/eds/ModuleEntry.h"
#include "adapters/eds/module/LibebookService.h"

#include <glib.h>

namespace {

/// The libraries complain on standard error about cards that they find odd, and show them there.
void keepLibrariesQuiet()
{
    constexpr auto kComplaints =
        static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING |
                                    G_LOG_LEVEL_MESSAGE | G_LOG_LEVEL_INFO | G_LOG_LEVEL_DEBUG);
    for (const char* const library : {"libebook", "libebook-contacts", "libedataserver"}) {
        g_log_set_handler(
            library, kComplaints,
            [](const char* /*library*/, GLogLevelFlags /*level*/, const char* /*text*/,
               void* /*unused*/) {},
            nullptr);
    }
}

}  // namespace

extern "C" __attribute__((visibility("default"))) dunmora::ContactService*
dunmoraMakeContactService()
{
    static const bool kAreQuiet = [] {
        keepLibrariesQuiet();
        return true;
    }();
    static_cast<void>(kAreQuiet);
    return new dunmora::LibebookService;
}
