#include "adapters/macos/MacUserDefaults.h"

#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace dunmora::test {
namespace {

// GNUstep has one store per process, in the build folder that `main` has set, so each test uses its
// own keys. Two programs that share a store are not tested here.

TEST(MacUserDefaults, HasNoValueForAKeyThatWasNeverSet)
{
    const MacUserDefaults defaults;

    EXPECT_FALSE(defaults.hasValue("neverSet"));
    EXPECT_FALSE(defaults.boolForKey("neverSet"));
}

TEST(MacUserDefaults, DistinguishesAStoredFalseFromAMissingKey)
{
    MacUserDefaults defaults;

    defaults.setBool("storedFalse", false);

    EXPECT_TRUE(defaults.hasValue("storedFalse"));
    EXPECT_FALSE(defaults.boolForKey("storedFalse"));
}

TEST(MacUserDefaults, ReturnsTheValueSetLast)
{
    MacUserDefaults defaults;
    for (const bool value : {true, false, true}) {
        defaults.setBool("setLast", value);

        EXPECT_EQ(defaults.boolForKey("setLast"), value);
    }
}

TEST(MacUserDefaults, WritesItsValuesToDisk)
{
    MacUserDefaults defaults;

    defaults.setBool("onTheDisk-ü", true);
    EXPECT_TRUE(defaults.synchronize());

    std::string stored;
    for (const auto& entry : std::filesystem::directory_iterator(DUNMORA_GNUSTEP_DEFAULTS)) {
        if (entry.is_regular_file()) {
            stored += contentOf(entry.path());
        }
    }
    EXPECT_NE(stored.find("onTheDisk-"), std::string::npos);
    EXPECT_TRUE(MacUserDefaults().boolForKey("onTheDisk-ü"));
}

TEST(MacUserDefaults, IgnoresAKeyThatIsNotUtf8)
{
    MacUserDefaults defaults;

    defaults.setBool("\xFF\xFE", true);

    EXPECT_FALSE(defaults.hasValue("\xFF\xFE"));
    EXPECT_FALSE(defaults.boolForKey("\xFF\xFE"));
}

TEST(MacUserDefaults, IsReadAndSetFromSeveralThreads)
{
    MacUserDefaults defaults;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&defaults, key = "thread" + std::to_string(i)] {
            for (int round = 0; round < 50; ++round) {
                defaults.setBool(key, round % 2 == 1);
                EXPECT_EQ(defaults.boolForKey(key), round % 2 == 1);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }

    EXPECT_TRUE(defaults.boolForKey("thread3"));
}

}  // namespace
}  // namespace dunmora::test
