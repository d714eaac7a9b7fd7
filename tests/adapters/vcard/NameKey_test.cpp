#include "adapters/vcard/NameKey.h"

#include <gtest/gtest.h>

#include <string>

namespace dunmora::test {

TEST(NameKey, IsTheSameInAnyCaseOnly)
{
    EXPECT_EQ(NameKey::of("nickName"), NameKey::of("NICKNAME"));
    for (const auto* other :
         {"N", "NN", "NICKNAM", "NICKNAMF", "MICKNAME", "NICK-AME", "NICK0AME"}) {
        EXPECT_NE(NameKey::of(other), NameKey::of("NICKNAME")) << other;
    }
    // The bits that differ between cases are the same between these, too.
    EXPECT_NE(NameKey::of("X-A"), NameKey::of("X\rA"));
    EXPECT_NE(NameKey::of("A0"), NameKey::of("AP"));
}

TEST(NameKey, BelongsToNamesOfUpToEightAllowedCharacters)
{
    EXPECT_NE(NameKey::of("X-12az"), 0U);
    EXPECT_EQ(NameKey::of("NICKNAMES"), 0U);
    for (int code = 0; code < 256; ++code) {
        const auto c = static_cast<char>(code);
        const bool isAllowed =
            (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
        EXPECT_EQ(NameKey::of(std::string("N") + c) != 0, isAllowed) << code;
    }
}

TEST(NameKey, GrowsWithEveryCharacter)
{
    NameKey key;

    EXPECT_TRUE(key.append('t'));
    EXPECT_FALSE(key.append(' '));
    EXPECT_TRUE(key.append('E'));

    EXPECT_EQ(key.value(), NameKey::of("TE"));
}

}  // namespace dunmora::test
