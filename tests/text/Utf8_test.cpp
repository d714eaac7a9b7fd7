#include "text/Utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace dunmora::test {

namespace {

using namespace std::string_literals;

TEST(Utf8, IsDistinguishedFromOtherBytes)
{
    for (const auto& text : {""s, "Ann"s, "J\u00F8rgen"s, "\u5B89\u85E4"s, "\U0001F33B"s,
                             "long enough for whole words \u00F8"s, "\0"s}) {
        EXPECT_TRUE(isUtf8(text)) << text;
    }
    for (const auto& bytes :
         {"\xF8"s, "\xC3"s, "abc\xC3"s, "\xC0\x80"s, "\xE0\x80\x80"s, "\xED\xA0\x80"s,
          "\xF0\x80\x80\x80"s, "\xF4\x90\x80\x80"s, "\xF5\x80\x80\x80"s, "\x80"s, "\xE5\xAE"s,
          "long enough for whole words \xF8"s}) {
        EXPECT_FALSE(isUtf8(bytes)) << testing::PrintToString(bytes);
    }
}

TEST(Utf8, RoundTripsEveryLengthOfCharacter)
{
    for (const char32_t codePoint : {U'\0', U'A', U'\x7F', U'\x80', U'\u07FF', U'\u0800', U'\uD7FF',
                                     U'\uE000', U'\uFFFF', U'\U00010000', U'\U0010FFFF'}) {
        std::string text = "x";

        appendUtf8(text, codePoint);

        const auto character = utf8CharacterAt(text, 1);
        EXPECT_TRUE(character.isValid);
        EXPECT_EQ(character.codePoint, codePoint);
        EXPECT_EQ(character.size, text.size() - 1);
        EXPECT_TRUE(isUtf8(text));
    }
}

TEST(Utf8, ReplacesTheLongestPartOfACharacterThatIsCutOff)
{
    const auto character = utf8CharacterAt("\xF0\x9F\x8C!", 0);

    EXPECT_FALSE(character.isValid);
    EXPECT_EQ(character.codePoint, kReplacementCharacter);
    EXPECT_EQ(character.size, 3U);
    EXPECT_EQ(utf8CharacterAt("\xE0\x80", 0).size, 1U);
}

}  // namespace

}  // namespace dunmora::test
