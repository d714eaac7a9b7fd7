#include "text/SharedFlags.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <string>
#include <thread>

namespace dunmora {
namespace {

TEST(SharedFlags, AreMissingUntilTheyAreSet)
{
    SharedFlags flags;
    EXPECT_EQ(flags.find("home"), nullptr);

    flags.set("home", false);

    ASSERT_NE(flags.find("home"), nullptr);
    EXPECT_FALSE(*flags.find("home"));
    EXPECT_EQ(flags.find("work"), nullptr);
    EXPECT_EQ(flags.find("hom"), nullptr);
    EXPECT_EQ(flags.find(""), nullptr);
}

TEST(SharedFlags, AreFoundInWhateverOrderTheyWereSet)
{
    SharedFlags flags;
    const SharedFlags::Flags expected = {{"", true},        {"b", true},  {"a", false},
                                         {"work", false},   {"c", true},  {"home", true},
                                         {"mobile", false}, {"aa", true}, {"zzz", false}};
    for (const auto* name : {"mobile", "b", "zzz", "home", "", "a", "work", "aa", "c"}) {
        flags.set(name, expected.at(name));
    }

    for (const auto& [name, value] : expected) {
        ASSERT_NE(flags.find(name), nullptr) << name;
        EXPECT_EQ(*flags.find(name), value) << name;
    }
}

TEST(SharedFlags, DifferInEveryCharacterOfTheirNames)
{
    for (std::size_t size = 1; size <= 40; ++size) {
        const std::string name(size, 'n');
        SharedFlags flags;
        flags.set(name, true);

        EXPECT_NE(flags.find(name), nullptr) << size;
        for (std::size_t place = 0; place < size; ++place) {
            auto other = name;
            other[place] = 'm';
            EXPECT_EQ(flags.find(other), nullptr) << other;
        }
        EXPECT_EQ(flags.find(name + 'n'), nullptr) << size;
        EXPECT_EQ(flags.find(name.substr(1)), nullptr) << size;
    }
}

TEST(SharedFlags, TakeTheLastValue)
{
    SharedFlags flags;
    flags.set("home", true);
    flags.set("home", false);

    EXPECT_FALSE(*flags.find("home"));
}

TEST(SharedFlags, AreReplacedAllAtOnce)
{
    SharedFlags flags;
    flags.set("home", true);

    flags.replace({{"mobile", false}, {"work", true}});

    EXPECT_EQ(flags.find("home"), nullptr);
    EXPECT_FALSE(*flags.find("mobile"));
    EXPECT_TRUE(*flags.find("work"));
}

TEST(SharedFlags, StayValidForThoseWhoFoundThem)
{
    SharedFlags flags;
    flags.set("home", true);
    const auto* const found = flags.find("home");

    flags.set("home", false);
    flags.replace({});

    EXPECT_TRUE(*found);
}

TEST(SharedFlags, TakeNoMemoryWhenTheyAreStoredAgain)
{
    SharedFlags flags;
    flags.replace({{"home", true}, {"work", false}});
    const auto* const found = flags.find("home");

    flags.set("work", false);
    flags.replace({{"home", true}, {"work", false}});

    EXPECT_EQ(flags.find("home"), found);
}

TEST(SharedFlags, AreReadWhileTheyChange)
{
    SharedFlags flags;
    flags.set("stays", true);
    std::atomic<bool> isDone = false;
    std::atomic<int> lost = 0;
    std::thread reader([&] {
        while (!isDone) {
            const auto* const stays = flags.find("stays");
            lost += stays == nullptr || !*stays ? 1 : 0;
        }
    });

    for (int i = 0; i < 1000; ++i) {
        flags.set("changes", i % 2 == 0);
        flags.replace({{"name " + std::to_string(i), true}, {"stays", true}});
    }
    isDone = true;
    reader.join();

    EXPECT_EQ(lost, 0);
}

}  // namespace
}  // namespace dunmora
