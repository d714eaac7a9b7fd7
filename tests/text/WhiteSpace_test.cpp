#include "text/WhiteSpace.h"

#include <gtest/gtest.h>

#include <string_view>

namespace dunmora::test {
namespace {

TEST(WhiteSpace, IsABlankOfAnyScript)
{
    for (const auto c : {U' ', U'\t', U'\n', U'\r', U'\u0085', U'\u00A0', U'\u1680', U'\u2000',
                         U'\u200A', U'\u2028', U'\u2029', U'\u202F', U'\u205F', U'\u3000'}) {
        EXPECT_TRUE(isWhiteSpace(c)) << std::hex << static_cast<unsigned>(c);
    }
    for (const auto c : {U'a', U'-', U'\u0000', U'\u200B', U'\u2800', U'\uFEFF'}) {
        EXPECT_FALSE(isWhiteSpace(c)) << std::hex << static_cast<unsigned>(c);
    }
}

TEST(WhiteSpace, LeavesATextBlank)
{
    for (const auto* const text : {"", " ", "\t", " \r\n", "\u00A0", "\u3000\u3000", "\u200B",
                                   "\uFEFF ", "\u202E\u202C", "\u2800", "\u3164", "\u00AD"}) {
        EXPECT_TRUE(showsNothing(text)) << text;
    }
    for (const auto* const text : {"a", " a ", "-", "\x01", "\xA0", "\u3000.", "\u00E9"}) {
        EXPECT_FALSE(showsNothing(text)) << text;
    }
    EXPECT_FALSE(showsNothing(std::string_view("\0", 1)));
}

TEST(WhiteSpace, IsFoldedToOneSpace)
{
    EXPECT_EQ(withFoldedWhiteSpace(""), "");
    EXPECT_EQ(withFoldedWhiteSpace(" \u00A0 "), "");
    EXPECT_EQ(withFoldedWhiteSpace("1 Main St"), "1 Main St");
    EXPECT_EQ(withFoldedWhiteSpace("\n1\u3000 Main\r\n\tSt\u00A0"), "1 Main St");
    EXPECT_EQ(withFoldedWhiteSpace("Zo\xEB  Lee"), "Zo\xEB Lee");
}

}  // namespace
}  // namespace dunmora::test
