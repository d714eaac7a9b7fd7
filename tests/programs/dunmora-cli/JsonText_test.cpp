#include "programs/dunmora-cli/JsonText.h"

#include "tests/programs/dunmora-cli/ReferenceJson.h"

#include <gtest/gtest.h>

#include <random>

namespace dunmora::test {
namespace {

std::string jsonText(std::string_view text, JsonCharacters characters)
{
    std::string out;
    appendJsonText(out, text, characters);
    return out;
}

void expectAsExpected(const std::string& text)
{
    for (const auto characters : {JsonCharacters::Utf8, JsonCharacters::Ascii}) {
        EXPECT_EQ(jsonText(text, characters), referenceJsonText(text, characters));
    }
}

TEST(JsonText, EscapesAsciiCharactersAsRequired)
{
    for (int c = 0; c < 0x80; ++c) {
        expectAsExpected(std::string("a") + static_cast<char>(c) + "b");
    }
    EXPECT_EQ(jsonText("\"\\/\b\f\n\r\t\x1f", JsonCharacters::Utf8), R"("\"\\/\b\f\n\r\t\u001f")");
}

TEST(JsonText, KeepsOrEscapesOtherCharacters)
{
    EXPECT_EQ(jsonText("Zoë 王 😀", JsonCharacters::Utf8), "\"Zoë 王 😀\"");
    EXPECT_EQ(jsonText("Zoë 王 😀", JsonCharacters::Ascii), R"("Zo\u00eb \u738b \ud83d\ude00")");
    for (const auto* text : {"\u0080", "\u07FF", "\u0800", "\uD7FF", "\uE000", "\uFFFD", "\uFFFF",
                             "\U00010000", "\U0010FFFF", "\u2028\u2029"}) {
        expectAsExpected(text);
    }
}

TEST(JsonText, ReplacesInvalidUtf8)
{
    EXPECT_EQ(jsonText("a\xFFz", JsonCharacters::Utf8), "\"a\xEF\xBF\xBDz\"");
    EXPECT_EQ(jsonText("a\xC3", JsonCharacters::Ascii), R"("a\ufffd")");
    // Longer than needed, a surrogate, beyond the last character, cut off, a stray continuation.
    for (const auto* text : {"\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                             "\xF0\x9F\x98", "\xE7\x8E", "\x80", "\xE7\x8Ex", "\xF5"}) {
        expectAsExpected(text);
    }
}

TEST(JsonText, EscapesAnyBytesAsTheLibraryDoes)
{
    std::mt19937 random(20240501);
    // Mostly parts of characters, so that some complete ones occur by chance.
    constexpr std::string_view kBytes = "a\"\\\x01\x7f\xC3\xAB\xE7\x8E\x8B\xF0\x9F\x98\x80\xED\xA0";
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        for (auto length = random() % 12; length > 0; --length) {
            text += random() % 4 == 0 ? static_cast<char>(random() % 256)
                                      : kBytes[random() % kBytes.size()];
        }
        expectAsExpected(text);
    }
}

}  // namespace
}  // namespace dunmora::test
