#include "text/TextHash.h"

#include <gtest/gtest.h>

#include <string>
#include <unordered_map>

namespace dunmora::test {
namespace {

TEST(TextHash, DrawsAnotherKeyEachTime)
{
    const auto a = randomSipKey();
    const auto b = randomSipKey();

    EXPECT_NE(a.first, b.first);
    EXPECT_NE(a.second, b.second);
    EXPECT_NE(a.first, a.second);
    // Both halves of a number are drawn.
    EXPECT_NE(a.first >> 32U, b.first >> 32U);
    EXPECT_NE(a.second >> 32U, b.second >> 32U);
}

TEST(TextHash, HasAKeyThatStaysTheSame)
{
    EXPECT_NE(textHash("Ann"), (sipHash<1, 3>(SipKey(), "Ann")));
    EXPECT_EQ(textHash("Ann"), textHash("Ann"));
}

TEST(TextHash, ServesStandardContainers)
{
    std::unordered_map<std::string, int, TextHash> ages;
    ages["Ann"] = 30;

    EXPECT_EQ(ages.count("Ann"), 1U);
    EXPECT_EQ(TextHash()("Ann"), textHash("Ann"));
}

}  // namespace
}  // namespace dunmora::test
