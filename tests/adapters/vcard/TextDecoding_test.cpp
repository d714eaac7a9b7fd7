#include "adapters/vcard/TextDecoding.h"

#include "text/Utf8.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace dunmora::test {
namespace {

using namespace std::string_literals;

constexpr std::string_view kBase64Digits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// The bytes in base64, six bits at a time.
std::string base64Of(std::string_view bytes)
{
    std::string text;
    for (std::size_t bit = 0; bit < 8 * bytes.size(); bit += 6) {
        const auto byteAt = [&](std::size_t position) -> std::uint32_t {
            return position < bytes.size() ? static_cast<unsigned char>(bytes[position]) : 0;
        };
        const auto pair = byteAt(bit / 8) << 8U | byteAt(bit / 8 + 1);
        text += kBase64Digits[pair >> (10 - bit % 8) & 0x3FU];
    }
    return text.append((4 - text.size() % 4) % 4, '=');
}

TEST(ToUtf8, ReadsInvalidBytesAsWindows1252)
{
    EXPECT_EQ(toUtf8("a\xF8\xC3\xB8\x80\x81", ""), "a\u00F8\u00F8\u20AC\u0081");
    EXPECT_EQ(toUtf8("\x88\xC0\xFF", "Shift_JIS"), "\u5B89\u00FF");
    EXPECT_EQ(toUtf8("\x88", "Shift_JIS"), "\u02C6");
}

TEST(ToUtf8, ConvertsTextLongerThanItsBuffer)
{
    EXPECT_EQ(toUtf8(std::string(1000, '\xE4'), "ISO-8859-1").size(), 2000U);
}

TEST(ToUtf8, RepairsWhatAConverterReturns)
{
    for (const auto* charset :
         {"UTF+8", "UCS-4", "UCS-4LE", "INTERNAL", "WCHAR_T", "ISO-IR-193", "UTF-16", "UTF-7"}) {
        for (const auto& bytes :
             {"a\xFF"s, "\xED\xA0\x80"s, "\xF4\x90\x80\x80"s, "\xF8\x88\x80\x80\x80"s,
              "\x7F\xFF\xFF\xFF"s, "\0\xD8\0\0"s, "\0\0\xD8\0"s, "\xC0\x80xx"s}) {
            const auto text = toUtf8(bytes, charset);

            EXPECT_TRUE(isUtf8(text)) << charset << testing::PrintToString(bytes);
            EXPECT_FALSE(text.empty()) << charset << testing::PrintToString(bytes);
        }
    }
}

TEST(ToUtf8, KeepsACharacterThatTheConverterHoldsBack)
{
    // In TCVN an accent may follow a vowel.
    EXPECT_EQ(toUtf8("a\xB3", "TCVN"), "\u00E1");
    EXPECT_EQ(toUtf8("Lea", "TCVN"), "Lea");
    // In BIG5-HKSCS an accent may follow this E, too; the last byte is invalid.
    EXPECT_EQ(toUtf8("\x88\x66", "BIG5-HKSCS"), "\u00CA");
    EXPECT_EQ(toUtf8("\x88\x66\xFF", "BIG5-HKSCS"), "\u00CA\u00FF");
}

TEST(QuotedPrintable, IsDecodedAndOtherTextIsKept)
{
    EXPECT_EQ(decodeQuotedPrintable("J=C3=b8rgen"), "J\u00F8rgen");
    EXPECT_EQ(decodeQuotedPrintable("1=1 =G1 =4"), "1=1 =G1 =4");
    EXPECT_EQ(decodeQuotedPrintable("=41"), "A");
    EXPECT_EQ(decodeQuotedPrintable("="), "=");
}

TEST(Base64, IsDecodedAcrossBlanksAndLineEnds)
{
    EXPECT_EQ(decodeBase64("QW 5u\r\n TWFyaWU="), "AnnMarie");
    EXPECT_EQ(decodeBase64("QQ"), "A");
    EXPECT_EQ(decodeBase64(""), "");
    EXPECT_EQ(decodeBase64("A-B"), std::nullopt);
    EXPECT_EQ(decodeBase64("QQ==QQ"), std::nullopt);
}

TEST(Base64, IsDecodedWithABlankAtAnyPosition)
{
    std::string bytes;
    for (int size = 0; size < 20; ++size) {
        const auto text = base64Of(bytes);

        EXPECT_EQ(decodeBase64(text), bytes);
        for (std::size_t position = 0; position <= text.size(); ++position) {
            auto separated = text;
            separated.insert(position, "\t");
            EXPECT_EQ(decodeBase64(separated), bytes) << separated;
        }

        bytes += static_cast<char>(size * 97 + 200);
    }
}

TEST(Base64, HasNoOtherCharactersAtAnyPosition)
{
    constexpr std::size_t kDigits = 10;
    for (int i = 0; i < 256; ++i) {
        const auto other = static_cast<char>(i);
        if (kBase64Digits.find(other) != std::string_view::npos ||
            std::string_view("= \t\r\n").find(other) != std::string_view::npos) {
            continue;
        }
        for (std::size_t position = 0; position < kDigits; ++position) {
            std::string text(kDigits, 'Q');
            text[position] = other;
            EXPECT_EQ(decodeBase64(text), std::nullopt) << i << " at " << position;
        }
    }
}

TEST(Base64, HasNoDigitAfterThePadding)
{
    constexpr std::size_t kSize = 9;
    for (std::size_t position = 0; position < kSize; ++position) {
        std::string text(kSize, 'Q');
        text[position] = '=';
        EXPECT_EQ(decodeBase64(text).has_value(), position == kSize - 1) << text;
    }
}

TEST(Encoding, IsDetectedByAMark)
{
    EXPECT_EQ(detectEncoding("\xFF\xFE"), FileEncoding::Utf16LittleEndian);
    EXPECT_EQ(detectEncoding("\xFE\xFF"), FileEncoding::Utf16BigEndian);
    EXPECT_EQ(detectEncoding("\xEF\xBB\xBF"), FileEncoding::Bytes);
    EXPECT_EQ(detectEncoding("B"), FileEncoding::Bytes);
    EXPECT_EQ(detectEncoding(""), FileEncoding::Bytes);
}

TEST(Encoding, IsUtf16WithoutAMarkOnlyWhereTheTextBeginsWithBegin)
{
    EXPECT_EQ(detectEncoding("B\0E\0G\0I\0N\0"s), FileEncoding::Utf16LittleEndian);
    EXPECT_EQ(detectEncoding("\0B\0E\0G\0I\0N\0:"s), FileEncoding::Utf16BigEndian);
    EXPECT_EQ(detectEncoding(" \0\t\0\r\0\n\0\v\0\f\0b\0E\0g\0i\0n\0"s),
              FileEncoding::Utf16LittleEndian);

    EXPECT_EQ(detectEncoding("B\0E\0G\0I\0"s), FileEncoding::Bytes);
    EXPECT_EQ(detectEncoding("B\0E\0 \0G\0I\0N\0"s), FileEncoding::Bytes);
    EXPECT_EQ(detectEncoding("B\1E\1G\1I\1N\1"s), FileEncoding::Bytes);
    EXPECT_EQ(detectEncoding("B\0b\0B\0E\0G\0I\0N\0"s), FileEncoding::Bytes);
    EXPECT_EQ(detectEncoding("x\0B\0E\0G\0I\0N\0"s), FileEncoding::Bytes);
    EXPECT_EQ(detectEncoding("\0\n\0\nBEGIN:VCARD"s), FileEncoding::Bytes);
    EXPECT_EQ(detectEncoding("BEGIN"), FileEncoding::Bytes);
}

TEST(Utf16, IsConvertedToUtf8WhoseUtf16SizeIsKnown)
{
    const auto little = "\xFF\xFE"
                        "A\0\xF8\0\x3C\xD8\x3B\xDF"s;
    const auto text = utf16ToUtf8(little, FileEncoding::Utf16LittleEndian);

    EXPECT_EQ(text, "\uFEFFA\u00F8\U0001F33B");
    EXPECT_EQ(utf16Size(text), little.size());
    EXPECT_EQ(utf16ToUtf8("\0A\xD8\x3C\xDF\x3B"s, FileEncoding::Utf16BigEndian), "A\U0001F33B");
}

TEST(Utf16, HasHalfPairsReplacedAndALastOddByteDropped)
{
    const auto broken = "\x3C\xD8"
                        "A\0\x3B\xDFx"s;
    const auto text = utf16ToUtf8(broken, FileEncoding::Utf16LittleEndian);

    EXPECT_EQ(text, "\uFFFD"
                    "A\uFFFD");
    EXPECT_EQ(utf16Size(text), broken.size() - 1);
}

}  // namespace
}  // namespace dunmora::test
