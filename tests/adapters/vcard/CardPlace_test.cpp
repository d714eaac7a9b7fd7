#include "adapters/vcard/CardPlace.h"

#include "platform/PlatformError.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace dunmora::test {
namespace {

constexpr auto kTooLarge = std::size_t{1} << 32U;

TEST(CardPlace, IsThatOfTheCard)
{
    const CardPlace place(3, {{2, 7}, 2});

    EXPECT_EQ(place.file, 3U);
    EXPECT_EQ(place.range().begin, 2U);
    EXPECT_EQ(place.range().end, 7U);
    EXPECT_EQ(place.cardIn("0123456789"), "234");
    EXPECT_EQ(place.linesIn("0123456789"), "23456");
    EXPECT_FALSE(place.isPending);
    EXPECT_FALSE(place.isRemoved);
}

TEST(CardPlace, CanBeTheLastOfTheLargestBook)
{
    const CardPlace place(0, {{kTooLarge - 1, kTooLarge}, 0});

    EXPECT_EQ(place.range().begin, kTooLarge - 1);
    EXPECT_EQ(place.range().end, kTooLarge);
}

TEST(CardPlace, IsRefusedRatherThanWrong)
{
    EXPECT_THROW(CardPlace(0, {{kTooLarge, kTooLarge + 1}, 0}), PlatformError);
    EXPECT_THROW(CardPlace(0, {{0, kTooLarge}, 0}), PlatformError);
    EXPECT_THROW(CardPlace(kTooLarge, {{0, 1}, 0}), PlatformError);
}

}  // namespace
}  // namespace dunmora::test
