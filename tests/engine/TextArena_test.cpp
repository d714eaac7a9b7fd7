#include "engine/TextArena.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {
namespace {

TEST(TextArena, KeepsEveryTextWhereItIs)
{
    TextArena arena;
    std::vector<std::string_view> texts;
    std::vector<const char*> places;
    for (int i = 0; i < 10'000; ++i) {
        texts.push_back(arena.store(std::to_string(i)));
        places.push_back(texts.back().data());
    }

    for (int i = 0; i < 10'000; ++i) {
        const auto at = static_cast<std::size_t>(i);
        ASSERT_EQ(texts[at], std::to_string(i));
        ASSERT_EQ(texts[at].data(), places[at]);
    }
}

TEST(TextArena, CopiesTheText)
{
    TextArena arena;
    std::string text = "Ann";
    const auto stored = arena.store(text);

    text = "Ben";

    EXPECT_EQ(stored, "Ann");
}

TEST(TextArena, StoresTextsBackToBack)
{
    TextArena arena;
    const auto first = arena.store("Ann");
    const auto second = arena.store("Ben");

    EXPECT_EQ(first.data() + first.size(), second.data());
}

TEST(TextArena, StoresATextLargerThanABlock)
{
    TextArena arena;
    const std::string large(3'000'000, 'x');

    const auto before = arena.store("Ann");
    const auto stored = arena.store(large);
    const auto after = arena.store("Ben");

    EXPECT_EQ(before, "Ann");
    EXPECT_EQ(stored, large);
    EXPECT_EQ(after, "Ben");
}

TEST(TextArena, HasAPlaceForTheEmptyText)
{
    TextArena arena;

    EXPECT_NE(arena.store("").data(), nullptr);
    EXPECT_EQ(arena.store(""), "");
}

}  // namespace
}  // namespace dunmora::test
