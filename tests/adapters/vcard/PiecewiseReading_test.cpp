#include "adapters/vcard/PiecewiseReading.h"

#include "tests/adapters/vcard/ReadText.h"
#include "text/TextIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

namespace {

using Ends = std::vector<std::size_t>;

std::string shown(const OptionalText& text)
{
    return text ? "'" + std::string(*text) + "'" : "-";
}

std::string shown(const CardRange& range)
{
    return std::to_string(range.begin) + "-" + std::to_string(range.end) + "/" +
           std::to_string(range.lineEndSize);
}

/// Everything that was read, one text for each person, group and skipped card.
Texts shown(const CardReader::Cards& cards)
{
    Texts texts;
    for (std::size_t i = 0; i < cards.people.size(); ++i) {
        const auto& person = cards.people[i];
        std::string text = shown(cards.ranges.at(i));
        text += " '" + std::string(person.uid) + "'";
        if (cards.hashesUids) {
            EXPECT_EQ(cards.uidHashes.at(i), TextIndex::hashOf(person.uid));
        }
        for (const auto& name : {person.firstName, person.lastName, person.nickname}) {
            text += " " + shown(name);
        }
        text += person.modified ? " " + std::to_string(person.modified->time_since_epoch().count())
                                : " -";
        text += person.phones ? " phones" : "";
        for (const auto& phone : person.phones.value_or(PhoneList())) {
            text += " " + shown(phone.label) + "='" + std::string(phone.value) + "'";
        }
        texts.push_back(text);
    }
    EXPECT_EQ(cards.uidHashes.size(), cards.hashesUids ? cards.people.size() : 0);
    for (const auto& group : cards.groups) {
        texts.push_back("group " + shown(group));
    }
    for (const auto skipped : cards.skipped) {
        texts.push_back("skipped " + std::to_string(skipped));
    }
    return texts;
}

Texts readWhole(std::string_view text)
{
    CardReader reader({1, 1});
    CardReader::Cards cards;
    cards.hashesUids = true;
    reader.read(text, CardReader::Text::Bytes, cards);
    return shown(cards);
}

Texts readInPieces(std::string_view text, const Ends& ends, std::size_t threads = 2)
{
    PiecewiseReading::Memories memories;
    CardReader::Cards cards;
    cards.hashesUids = true;
    PiecewiseReading(text, CardReader::Text::Bytes, ends, memories, cards).run(threads);
    return shown(cards);
}

/// Expects the same with a piece for every BEGIN line that can begin one.
void expectSameInPieces(const std::string& text)
{
    const auto ends = pieceEnds(text, 1);

    EXPECT_GE(ends.size(), 2U) << text;
    EXPECT_EQ(readInPieces(text, ends), readWhole(text)) << text;
}

TEST(PiecewiseReading, DividesATextAtBeginLines)
{
    const auto one = named("Ann").size();

    EXPECT_EQ(pieceEnds(named("Ann") + named("Bob") + named("Cat"), 1),
              (Ends{one, 2 * one, 3 * one}));
    EXPECT_EQ(pieceEnds(named("Ann") + named("Bob") + named("Cat"), one),
              (Ends{one, 2 * one, 3 * one}));
    EXPECT_EQ(pieceEnds(named("Ann") + named("Bob") + named("Cat"), one + 1),
              (Ends{2 * one, 3 * one}));
    EXPECT_EQ(pieceEnds(named("Ann") + named("Bob"), 2 * one), Ends{2 * one});
    EXPECT_EQ(pieceEnds("", 1), Ends{0});
}

TEST(PiecewiseReading, DividesNothingWhereNoLineOrCardBegins)
{
    for (const std::string_view text :
         {"N:Ann\nN:Bob\nN:Cat\n", "NOTE:BEGIN:VCARD\n", "\n BEGIN:VCARD\n", "\rBEGIN:VCARD\r"}) {
        EXPECT_EQ(pieceEnds(text, 1), Ends{text.size()}) << text;
    }
}

TEST(PiecewiseReading, KeepsTheOrderOfTheText)
{
    std::string text;
    for (int i = 0; i < 200; ++i) {
        text += named("Ann " + std::to_string(i)) + (i % 50 == 7 ? card30("KIND:group\r\n") : "") +
                (i % 50 == 9 ? "BEGIN:VCARD\r\nN:Lost\r\n" : "");
    }
    const auto whole = readWhole(text);

    EXPECT_EQ(whole.size(), 208U);
    for (const std::size_t threads : {1, 2, 5}) {
        EXPECT_EQ(readInPieces(text, pieceEnds(text, 1), threads), whole) << threads;
        EXPECT_EQ(readInPieces(text, pieceEnds(text, 500), threads), whole) << threads;
    }
}

TEST(PiecewiseReading, AppendsToWhatIsThere)
{
    const auto first = named("Ann") + card30("KIND:group\r\n") + "BEGIN:VCARD\r\n" + named("Bob");
    const auto second = named("Cat") + named("Dan");
    CardReader whole({1, 1});
    CardReader inPieces({2, 1});
    CardReader::Cards expected;
    CardReader::Cards cards;

    for (const auto* text : {&first, &second, &second}) {
        whole.read(*text, CardReader::Text::Bytes, expected);
        inPieces.read(*text, CardReader::Text::Bytes, cards);
    }

    EXPECT_EQ(cards.people.size(), 6U);
    EXPECT_EQ(shown(cards), shown(expected));
}

TEST(PiecewiseReading, KeepsDecodedTextAsLongAsTheReader)
{
    std::string text;
    for (int i = 0; i < 20; ++i) {
        text += card30("N:;Ann\\, " + std::to_string(i) +
                       ";;;\r\nTEL;TYPE=cell:" + std::to_string(i) + "\r\n");
    }
    CardReader reader({2, 100});
    CardReader::Cards cards;

    reader.read(text, CardReader::Text::Bytes, cards);

    EXPECT_EQ(shown(cards), readWhole(text));
}

TEST(PiecewiseReading, DecodesEachPieceLikeTheWholeText)
{
    const auto jorg = card21("N;CHARSET=ISO-8859-1:;J\xC3\xB6rg;;;\r\n");
    const auto text = jorg + jorg + jorg;
    CardReader reader({2, 1});
    CardReader::Cards bytes;
    CardReader::Cards utf8;

    reader.read(text, CardReader::Text::Bytes, bytes);
    reader.read(text, CardReader::Text::Utf8, utf8);

    ASSERT_EQ(bytes.people.size(), 3U);
    ASSERT_EQ(utf8.people.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(bytes.people[i].firstName, "J\xC3\x83\xC2\xB6rg");
        EXPECT_EQ(utf8.people[i].firstName, "J\xC3\xB6rg");
    }
}

TEST(PiecewiseReading, ReadsABeginInAnAgentAsPartOfItsCard)
{
    expectSameInPieces(named("Ann") +
                       "BEGIN:VCARD\nVERSION:2.1\nN:;Boss;;;\nAGENT:\nBEGIN:VCARD\nN:;Aide;;;\n"
                       "END:VCARD\nTEL:1\nEND:VCARD\n" +
                       named("Bob"));
    expectSameInPieces("BEGIN:VCARD\nN:;Boss;;;\nAGENT:BEGIN:VCARD\nN:;Aide;;;\nAGENT:\n"
                       "BEGIN:VCARD\nN:;Second;;;\nEND:VCARD\nEND:VCARD\nEND:VCARD\n" +
                       named("Bob"));
}

TEST(PiecewiseReading, ReadsACardThatBreaksOffAtTheEndOfAPiece)
{
    expectSameInPieces("BEGIN:VCARD\nN:;Lost;;;\n" + named("Ann") + "BEGIN:VCARD\n" + named("Bob"));
    expectSameInPieces(named("Ann") + "BEGIN:VCARD\nN:;Lost;;;\n");
    expectSameInPieces("BEGIN:VCARD\nN:;Lost;;;\nAGENT:\n" + named("Ann") + named("Bob"));
}

TEST(PiecewiseReading, ReadsABeginWhereAQuotedPrintableTextBreaksOff)
{
    expectSameInPieces("BEGIN:VCARD\nVERSION:2.1\nN:;Lost;;;\n"
                       "NOTE;ENCODING=QUOTED-PRINTABLE:ends with=\nBEGIN:VCARD\nN:;Ann;;;\n"
                       "END:VCARD\n" +
                       named("Bob"));
}

TEST(PiecewiseReading, ReadsOddLinesBeforeABegin)
{
    using namespace std::string_literals;
    for (const auto& odd :
         {"\xEF\xBB\xBF"s, "\xEF\xBB\xBF\n"s, "\0\0"s, "\r"s, "\r\r\n"s, " "s, "\n \n"s,
          "END:VCARD\n"s, "PHOTO;ENCODING=BASE64:AAAA\nBBBB\n"s, "between cards\n"s}) {
        expectSameInPieces(joined({named("Ann"), named("Bob") + named("Cat"), named("Dan")}, odd));
    }
}

/// A line of a random text. Lines that leave a card open are as likely as those that end one.
std::string_view randomLine(std::mt19937& random)
{
    using namespace std::string_view_literals;
    static constexpr std::array kLines = {
        "BEGIN:VCARD\r\n"sv,
        "BEGIN:VCARD\n"sv,
        "BEGIN:VCARD\n"sv,
        "BEGIN:VCARD\nN:Lee;Ann\nEND:VCARD\n"sv,
        "BEGIN:VCARD\nUID:1\nN:Lee;Ann\\,\nEND:VCARD\n"sv,
        "\n"sv,
        "\r"sv,
        " "sv,
        "\0"sv,
        "\xEF\xBB\xBF"sv,
        "="sv,
        " BEGIN:VCARD\n"sv,
        "BEGIN:VCARDS\n"sv,
        "BEGIN:VCARD \r"sv,
        "END:VCARD\n"sv,
        "END:VCARD\r\n"sv,
        "END:VCARD\r"sv,
        " END:VCARD\n"sv,
        "VERSION:2.1\n"sv,
        "VERSION:3.0\r\n"sv,
        "AGENT:\n"sv,
        "AGENT:BEGIN:VCARD\n"sv,
        "NOTE;ENCODING=QUOTED-PRINTABLE:text=\n"sv,
        "FN;ENCODING=QUOTED-PRINTABLE:J=C3=\n=B6rg\n"sv,
        "PHOTO;ENCODING=BASE64:AAAA\n"sv,
        "BBBB\n"sv,
        "KIND:group\n"sv,
        "TEL;TYPE=cell:555\n"sv,
        "item1.TEL:556\nitem1.X-ABLABEL:Boat\n"sv,
    };
    return kLines.at(random() % kLines.size());
}

std::string randomText(std::mt19937& random)
{
    std::string text;
    for (auto lines = random() % 40; lines > 0; --lines) {
        text += randomLine(random);
    }
    return text;
}

/// Some of these ends, always with the last.
Ends someOf(const Ends& ends, std::mt19937& random)
{
    Ends some;
    std::copy_if(ends.begin(), ends.end() - 1, std::back_inserter(some),
                 [&](std::size_t) { return random() % 3 > 0; });
    some.push_back(ends.back());
    return some;
}

/// Ends anywhere in the text, also in the middle of a line.
Ends anyEnds(const std::string& text, std::mt19937& random)
{
    Ends ends{text.size()};
    for (auto count = random() % 10; count > 0 && !text.empty(); --count) {
        ends.push_back(1 + random() % text.size());
    }
    std::sort(ends.begin(), ends.end());
    ends.erase(std::unique(ends.begin(), ends.end()), ends.end());
    return ends;
}

TEST(PiecewiseReading, ReadsRandomTextsLikeOneThread)
{
    // The same sequence on every run.
    std::mt19937 random(1);  // NOLINT(cert-msc32-c,cert-msc51-cpp)
    std::size_t found = 0;
    for (int i = 0; i < 1000; ++i) {
        const auto text = randomText(random);
        const auto whole = readWhole(text);
        found += whole.size();

        ASSERT_EQ(readInPieces(text, someOf(pieceEnds(text, 1), random)), whole) << text;
        ASSERT_EQ(readInPieces(text, anyEnds(text, random)), whole) << text;
    }
    EXPECT_GT(found, 3000U);
}

}  // namespace

}  // namespace dunmora::test
