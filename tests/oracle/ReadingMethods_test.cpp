#include "tests/fuzz/ReadingMethods.h"

#include "adapters/posix/FileContent.h"
#include "bench/big_book.h"
#include "tests/oracle/CardGenerator.h"
#include "tests/oracle/RealCards.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>

namespace dunmora::test {

namespace {

/// A text of whole lines in random order, so that each occurs after every other: delimiters in odd
/// places, folds, soft breaks, base64 that is not folded, and ordinary lines.
std::string randomLines(std::mt19937& random)
{
    static constexpr std::array<std::string_view, 44> kLines{
        "BEGIN:VCARD",
        "BEGIN:VCARD",
        "begin : vcard",
        " BEGIN:VCARD",
        "\xEF\xBB\xBF"
        "BEGIN:VCARD",
        "BEGIN:VCARDS",
        "END:VCARD",
        "END:VCARD",
        "\tEND:VCARD",
        "END;X=1:VCARD",
        "VERSION:2.1",
        "VERSION:3.0",
        "version:4.0",
        "N:Lee;Ann",
        "N;CHARSET=ISO-8859-1:L\xF8w;\xC3\x85se",
        "n:L\xC3\xB8w;Bo\\;b\\n",
        "N;ENCODING=QUOTED-PRINTABLE:L=C3=B8w;Ann=",
        "N",
        " :Low;Liz",
        "FN:Ann Lee=",
        "FN;QUOTED-PRINTABLE:Ann=20Lee",
        "NICKNAME;ENCODING=BASE64:QW5u",
        "NICKNAME:An\\,na",
        "UID:1",
        "item1.UID:2",
        "REV:2024-05-01T10:00:00Z",
        "TEL;TYPE=HOME:1",
        "TEL;TYPE=\"home:x\",work:2",
        "TEL;TYPE=B;x:3",
        "item1.TEL;CELL:4",
        "item1.X-ABLabel:_$!<Boat>!$_",
        "X-ABLabel:Boat",
        "TEL;TYPE=K\xFChl:5",
        "TEL",
        "PHOTO;ENCODING=b:bm90aGluZw==",
        "bm90aGluZw",
        "AGENT:",
        "AGENT:BEGIN:VCARD",
        "X-ADDRESSBOOKSERVER-KIND:group",
        "X-EVOLUTION-LIST:TRUE",
        "NOTE;CHARSET=x;ENCODING=QUOTED-PRINTABLE:call=",
        " folded",
        "",
        "no property",
    };
    static constexpr std::array<std::string_view, 4> kEnds{"\n", "\r\n", "\r", "\r\r\n"};
    const auto& usualEnd = kEnds[random() % kEnds.size()];
    std::string text;
    for (auto count = random() % 24; count > 0; --count) {
        text += kLines[random() % kLines.size()];
        text += random() % 8 == 0 ? kEnds[random() % kEnds.size()] : usualEnd;
    }
    if (random() % 4 == 0 && !text.empty()) {
        text.pop_back();
    }
    return text;
}

}  // namespace

TEST(ReadingMethods, AgreeOnABookAsAPhoneWritesIt)
{
    EXPECT_EQ(differenceOfMethods(bench::bigBook({.cards = 2000})), "");
}

TEST(ReadingMethods, AgreeOnGeneratedCards)
{
    for (std::uint32_t seed = 1; seed <= 150; ++seed) {
        CardGenerator generator(seed);
        std::string text;
        for (int card = 0; card < 20; ++card) {
            text += generator.junk();
            text += generator.next().bytes;
        }

        ASSERT_EQ(differenceOfMethods(text), "") << "seed " << seed << ":\n" << text;
    }
}

TEST(ReadingMethods, AgreeOnLinesInRandomOrder)
{
    std::mt19937 random(1);
    for (int round = 0; round < 8000; ++round) {
        const auto text = "BEGIN:VCARD\n" + randomLines(random);

        ASSERT_EQ(differenceOfMethods(text), "") << testing::PrintToString(text);
    }
}

TEST(ReadingMethods, AgreeOnRealCards)
{
    if (!std::filesystem::is_directory(realCardFolder())) {
        GTEST_SKIP() << "There are no real cards in " << realCardFolder();
    }

    for (const auto& file : realCardFiles()) {
        const auto content = readFile(file);
        EXPECT_EQ(differenceOfMethods(content.bytes.view()), "") << nameOf(file);
    }
}

}  // namespace dunmora::test
