#include "text/SipHash.h"

#include <gtest/gtest.h>

#include <string>

namespace dunmora::test {
namespace {

/// The key and the texts of the published test vectors: 00 01 02 and so on.
constexpr SipKey kKey = {0x0706050403020100U, 0x0f0e0d0c0b0a0908U};

std::string bytes(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += static_cast<char>(i);
    }
    return text;
}

TEST(SipHash, GivesThePublishedHashes)
{
    EXPECT_EQ((sipHash<2, 4>(kKey, bytes(0))), 0x726fdb47dd0e0e31U);
    EXPECT_EQ((sipHash<2, 4>(kKey, bytes(1))), 0x74f839c593dc67fdU);
    EXPECT_EQ((sipHash<2, 4>(kKey, bytes(7))), 0xab0200f58b01d137U);
    EXPECT_EQ((sipHash<2, 4>(kKey, bytes(8))), 0x93f5f5799a932462U);
    EXPECT_EQ((sipHash<2, 4>(kKey, bytes(9))), 0x9e0082df0ba9e4b0U);
    EXPECT_EQ((sipHash<2, 4>(kKey, bytes(10))), 0x7a5dbbc594ddb9f3U);
    EXPECT_EQ((sipHash<2, 4>(kKey, bytes(11))), 0xf4b32f46226bada7U);
    EXPECT_EQ((sipHash<2, 4>(kKey, bytes(12))), 0x751e8fbc860ee5fbU);
    EXPECT_EQ((sipHash<2, 4>(kKey, bytes(13))), 0x14ea5627c0843d90U);
    EXPECT_EQ((sipHash<2, 4>(kKey, bytes(14))), 0xf723ca908e7af2eeU);
    EXPECT_EQ((sipHash<2, 4>(kKey, bytes(15))), 0xa129ca6149be45e5U);
    EXPECT_EQ((sipHash<2, 4>(kKey, bytes(16))), 0x3f2acc7f57c29bdbU);
    EXPECT_EQ((sipHash<2, 4>(kKey, bytes(63))), 0x958a324ceb064572U);
}

TEST(SipHash, GivesThePublishedHashesWithFewerRounds)
{
    EXPECT_EQ((sipHash<1, 3>(kKey, bytes(0))), 0xabac0158050fc4dcU);
    EXPECT_EQ((sipHash<1, 3>(kKey, bytes(1))), 0xc9f49bf37d57ca93U);
    EXPECT_EQ((sipHash<1, 3>(kKey, bytes(7))), 0xd3927d989bb11140U);
    EXPECT_EQ((sipHash<1, 3>(kKey, bytes(8))), 0x369095118d299a8eU);
    EXPECT_EQ((sipHash<1, 3>(kKey, bytes(15))), 0xd320d86d2a519956U);
    EXPECT_EQ((sipHash<1, 3>(kKey, bytes(16))), 0xcc4fdd1a7d908b66U);
    EXPECT_EQ((sipHash<1, 3>(kKey, bytes(63))), 0x9d199062b7bbb3a8U);
}

TEST(SipHash, ReadsEveryByteOfTextsBeyondAscii)
{
    const auto hash = [](const std::string& text) { return sipHash<1, 3>(kKey, text); };

    EXPECT_NE(hash("\x80"), hash("\xFF"));
    EXPECT_NE(hash("seven--\x80"), hash("seven--\xFF"));
    EXPECT_NE(hash("eight---\x80"), hash("eight---\xFF"));
}

}  // namespace
}  // namespace dunmora::test
