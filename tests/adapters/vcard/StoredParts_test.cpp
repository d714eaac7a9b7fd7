#include "adapters/vcard/StoredParts.h"

#include "adapters/vcard/CardProperties.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {
namespace {

using Properties = std::vector<CardProperty>;

std::string cardOf(const std::vector<std::string>& lines)
{
    std::string card = "BEGIN:VCARD\r\n";
    for (const auto& line : lines) {
        card += line + "\r\n";
    }
    return card + "END:VCARD\r\n";
}

bool haveEqualParts(const std::string& one, const std::string& other)
{
    const auto parts = storedParts(one);
    return parts.has_value() && parts == storedParts(other);
}

Properties withoutOwnValues(std::string_view card)
{
    auto properties = readProperties(card, CardReader::Text::Bytes).value();
    std::erase_if(properties, [](const CardProperty& property) {
        return property.name == "UID" || property.name == "REV";
    });
    return properties;
}

TEST(StoredParts, AreEqualWhenOnlyTheUidAndTheRevisionDiffer)
{
    const auto one = cardOf({"UID:1", "FN:Ann", "rev:2024-01-01", "TEL:1"});

    EXPECT_TRUE(haveEqualParts(one, cardOf({"uid:22", "FN:Ann", "REV:2025-01-01", "TEL:1"})));
    EXPECT_TRUE(haveEqualParts(one, one.substr(0, one.size() - 2)));
    EXPECT_FALSE(haveEqualParts(one, cardOf({"UID:1", "FN:Ann", "rev:2024-01-01", "TEL:2"})));
    EXPECT_FALSE(haveEqualParts(one, cardOf({"UID:1", "FN:Ann", "rev:2024-01-01"})));
    EXPECT_FALSE(haveEqualParts(one, cardOf({"FN:Ann", "UID:1", "rev:2024-01-01", "TEL:1"})));
}

TEST(StoredParts, KeepAUidThatIsNotAnOrdinaryLine)
{
    const auto withUid = [](const std::string& uid, const std::string& next) {
        return cardOf({"FN:Ann", uid, next, "TEL:1"});
    };

    EXPECT_FALSE(haveEqualParts(withUid("UID:1", " a"), withUid("UID:2", " a")));
    EXPECT_FALSE(haveEqualParts(withUid("UID;X=1:1", "A:b"), withUid("UID;X=2:1", "A:b")));
    EXPECT_FALSE(haveEqualParts(withUid("a.UID:1", "A:b"), withUid("a.UID:2", "A:b")));
    EXPECT_FALSE(haveEqualParts(withUid("NOTE;ENCODING=QUOTED-PRINTABLE:a=", "UID:1"),
                                withUid("NOTE;ENCODING=QUOTED-PRINTABLE:a=", "UID:2")));
}

TEST(StoredParts, AreNotThoseOfACardWithAnotherCardInside)
{
    EXPECT_EQ(storedParts(cardOf({"FN:Ann", "AGENT:", "BEGIN:VCARD", "FN:Ben", "END:VCARD"})),
              std::nullopt);
    EXPECT_EQ(storedParts(cardOf({"FN:Ann", "AGENT:BEGIN:VCARD", "FN:Ben", "END:VCARD", "TEL:1"})),
              std::nullopt);
    EXPECT_EQ(
        storedParts(cardOf({"VERSION:2.1", "FN:Ann", "AGENT:", " BEGIN:VCARD", " END:VCARD"})),
        std::nullopt);
}

TEST(StoredParts, NeedANameThatShowsSomething)
{
    EXPECT_TRUE(storedParts(cardOf({"N:;Ann;;;"})));
    EXPECT_TRUE(storedParts(cardOf({"fn:李"})));
    EXPECT_FALSE(storedParts(cardOf({"UID:1", "TEL:1"})));
    EXPECT_FALSE(storedParts(cardOf({"N:;;;;", "FN: "})));
    EXPECT_FALSE(storedParts(cardOf({"FN:\u00A0"})));
    EXPECT_FALSE(storedParts(cardOf({"FN:\xA0"})));
    EXPECT_FALSE(storedParts(cardOf({"FN:\\n"})));
    EXPECT_FALSE(storedParts(cardOf({"NOTE;ENCODING=QUOTED-PRINTABLE:a=", "FN:Ann"})));
    EXPECT_FALSE(storedParts(cardOf({"FNX:Ann"})));
}

TEST(StoredParts, EndWithTheCard)
{
    EXPECT_FALSE(storedParts("BEGIN:VCARD\r\nFN:Ann\r\n"));
    EXPECT_FALSE(storedParts("BEGIN:VCARD"));
    EXPECT_FALSE(storedParts(""));
}

TEST(StoredParts, OfAllCardsAreEqualOnlyWhenTheirPropertiesAre)
{
    const std::vector<std::string> lines{"VERSION:2.1",
                                         "VERSION:3.0",
                                         "FN:Ann",
                                         "N:Lee;Ann;;;",
                                         "UID:1",
                                         "UID:2",
                                         "UID:=",
                                         "REV:2024-01-01",
                                         "REV:2025-01-01",
                                         "UID;CHARSET=ISO-8859-1:\xE4",
                                         "a.UID:1",
                                         "a.X-ABLabel:one",
                                         "a.TEL:1",
                                         " continued",
                                         "\tUID:1",
                                         " END:VCARD",
                                         "",
                                         "NOTE;ENCODING=QUOTED-PRINTABLE:a=3Db=",
                                         "NOTE:a=",
                                         "PHOTO;BASE64:AAAA",
                                         "PHOTO;ENCODING=b:",
                                         "AAAA",
                                         "AGENT:",
                                         "BEGIN:VCARD",
                                         "END:VCARD",
                                         "no property"};
    std::mt19937 random(14);
    const auto number = [&](std::size_t count) { return random() % count; };
    std::size_t equal = 0;
    for (int i = 0; i < 20'000; ++i) {
        std::vector<std::string> one{"FN:Ann"};
        for (auto count = number(7); count > 0; --count) {
            one.push_back(lines[number(lines.size())]);
        }
        auto other = one;
        other[number(other.size())] = lines[4 + number(5)];
        one[number(one.size())] = lines[4 + number(5)];
        const auto cards = std::array{cardOf(one), cardOf(other)};
        std::array<std::string, 2> found;
        for (std::size_t j = 0; j < cards.size(); ++j) {
            // What the book has as the card.
            CardReader reader;
            CardReader::Cards read;
            reader.read(cards[j], CardReader::Text::Bytes, read);
            if (read.ranges.size() == 1) {
                const auto& range = read.ranges[0];
                found[j] = cards[j].substr(range.begin, range.end - range.begin);
            }
        }
        if (!found[0].empty() && !found[1].empty() && haveEqualParts(found[0], found[1])) {
            ++equal;
            ASSERT_EQ(withoutOwnValues(found[0]), withoutOwnValues(found[1]))
                << found[0] << found[1];
        }
    }
    EXPECT_GT(equal, 1000U);
}

}  // namespace
}  // namespace dunmora::test
