#include "tests/adapters/macos/AddressesBook.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>

/// Suppresses the leak sanitizer's reports of what GNUstep allocates once for the process's
/// lifetime.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the sanitizer's name
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libgnustep-base\nleak:libobjc\nleak:libAddresses\n";
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

/// Restarts the program with settings that put the preferences and the address book into the build
/// folder, because GNUstep reads its settings before `main`.
int main(int argc, char* argv[])
{
    constexpr auto kVariable = "GNUSTEP_CONFIG_FILE";
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread runs yet
    const char* const settings = std::getenv(kVariable);
    if (settings == nullptr || std::string(settings) != DUNMORA_GNUSTEP_SETTINGS) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread runs yet
        setenv(kVariable, DUNMORA_GNUSTEP_SETTINGS, 1);
        execv("/proc/self/exe", argv);
        std::perror("macos_tests: cannot restart with its own settings");
        return EXIT_FAILURE;
    }
    try {
        testing::InitGoogleTest(&argc, argv);
        const dunmora::test::TemporaryFolder folder;
        dunmora::test::keepFrameworkPrivate(folder.path());
        return RUN_ALL_TESTS();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "macos_tests: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
