#include "adapters/vcard/StoredDifferences.h"

#include "adapters/vcard/CardProperties.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {
namespace {

using Texts = std::vector<std::string>;
using Properties = std::vector<CardProperty>;

std::string cardOf(const Texts& lines)
{
    std::string card = "BEGIN:VCARD\r\n";
    for (const auto& line : lines) {
        card += line + "\r\n";
    }
    return card + "END:VCARD\r\n";
}

/// The names, sorted; nullopt when the cards cannot be compared.
std::optional<Texts> differences(const Texts& cards)
{
    Texts names{"left from before"};
    const std::vector<std::string_view> views(cards.begin(), cards.end());
    if (!findStoredDifferences(views, names)) {
        return std::nullopt;
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::optional<Texts> differences(const Texts& one, const Texts& other)
{
    return differences({cardOf(one), cardOf(other)});
}

TEST(StoredDifferences, AreTheNamesOfPropertiesThatNotAllCardsHave)
{
    EXPECT_EQ(differences({"FN:Ann", "TEL:1"}, {"FN:Ann", "TEL:1"}), Texts{});
    EXPECT_EQ(differences({"FN:Ann", "TEL:1"}, {"FN:Ann", "TEL:2"}), Texts{"TEL"});
    EXPECT_EQ(differences({"FN:Ann", "TEL:1"}, {"FN:Ann"}), Texts{"TEL"});
    EXPECT_EQ(differences({"FN:Ann"}, {"FN:Ann", "TEL:1"}), Texts{"TEL"});
    EXPECT_EQ(differences({"FN:Ann", "TEL:1"}, {"FN:Ann", "TEL;TYPE=home:1"}), Texts{"TEL"});
    EXPECT_EQ(differences({"FN:Ann", "note:a", " b"}, {"FN:Ann", "note:a", " c"}), Texts{"NOTE"});
    EXPECT_EQ(differences({"FN:Ann", "X-Any:1", "tel:1"}, {"FN:Ann", "x-any:1", "TEL:1"}),
              (Texts{"TEL", "X-ANY"}));
}

TEST(StoredDifferences, AreThoseOfAllCards)
{
    EXPECT_EQ(differences({cardOf({"FN:Ann", "TEL:1"}), cardOf({"FN:Ann", "TEL:1"}),
                           cardOf({"FN:Ann", "TEL:1", "NOTE:a"}), cardOf({"FN:Ann"})}),
              (Texts{"NOTE", "TEL"}));
    EXPECT_EQ(differences({cardOf({"FN:Ann"})}), Texts{});
}

TEST(StoredDifferences, AreNeitherTheOrderNorRepetitions)
{
    EXPECT_EQ(differences({"FN:Ann", "TEL:1", "TEL:2"}, {"TEL:2", "FN:Ann", "TEL:1", "TEL:2"}),
              Texts{});
    EXPECT_EQ(differences({"FN:Ann", "TEL:1", "TEL:1"}, {"TEL:1", "FN:Ann", "NOTE:a"}),
              Texts{"NOTE"});
}

TEST(StoredDifferences, AreUnknownWhenOtherPropertiesDependOnThem)
{
    EXPECT_EQ(differences({"VERSION:2.1", "FN:Ann"}, {"VERSION:3.0", "FN:Ann"}), std::nullopt);
    EXPECT_EQ(differences({"FN:Ann"}, {"VERSION:3.0", "FN:Ann"}), std::nullopt);
    EXPECT_EQ(differences({"VERSION:2.1", "VERSION:3.0", "FN:Ann"},
                          {"VERSION:3.0", "VERSION:2.1", "FN:Ann"}),
              std::nullopt);
    EXPECT_EQ(
        differences({"FN:Ann", "a.TEL:1", "a.X-ABLabel:b"}, {"FN:Ann", "a.TEL:1", "a.X-ABLabel:c"}),
        std::nullopt);
    EXPECT_EQ(differences({"FN:Ann", "a.X-ABLabel:b", "a.X-ABLabel:c"},
                          {"FN:Ann", "a.X-ABLabel:c", "a.X-ABLabel:b"}),
              std::nullopt);
    EXPECT_EQ(differences({"VERSION:3.0", "FN:Ann", "a.TEL:1", "a.X-ABLabel:b"},
                          {"VERSION:3.0", "a.X-ABLabel:b", "FN:Ann", "a.TEL:1"}),
              Texts{});
}

TEST(StoredDifferences, AreUnknownWithoutANameThatShowsSomething)
{
    EXPECT_EQ(differences({"FN:Ann", "TEL:1"}, {"FN: ", "TEL:1"}), std::nullopt);
    EXPECT_EQ(differences({"TEL:1"}, {"FN:Ann", "TEL:1"}), std::nullopt);
}

TEST(StoredDifferences, AreUnknownInCardsThatMustBeRead)
{
    const Texts odd{"FN:Ann", "NOTE;ENCODING=QUOTED-PRINTABLE:a=", "b"};
    auto other = odd;
    other.emplace_back("TEL:1");

    EXPECT_EQ(differences(odd, other), std::nullopt);
    other.back() = "UID:1";
    EXPECT_EQ(differences(odd, other), std::nullopt);
    auto same = odd;
    same.emplace_back("UID:2");
    EXPECT_EQ(differences(same, other), Texts{});
}

TEST(StoredDifferences, AreUnknownInVeryLongCards)
{
    Texts card{"FN:Ann"};
    for (int i = 0; i < 1000; ++i) {
        card.push_back("TEL:" + std::to_string(i));
    }

    EXPECT_EQ(differences(card, {"FN:Ann"}), std::nullopt);
    EXPECT_EQ(differences({"FN:Ann"}, card), std::nullopt);
}

TEST(StoredDifferences, AreUnknownOfVeryManyNames)
{
    // Two more in each card than in the one before.
    Texts cards;
    std::string numbers;
    while (differences(cards).has_value() && cards.size() < 100) {
        numbers += '1';
        cards.push_back(cardOf({"FN:Ann", "X-A" + numbers + ":1", "X-B" + numbers + ":1"}));
    }

    EXPECT_GT(cards.size(), 4U);
    EXPECT_LT(cards.size(), 20U);
}

/// The properties without those of these names and the values of UID and REV, in any order, each
/// once.
Properties withoutNames(std::string_view card, const Texts& names)
{
    auto properties = readProperties(card, CardReader::Text::Bytes).value();
    Properties found;
    for (auto& property : properties) {
        const bool isNamed = property.name == "UID" || property.name == "REV" ||
                             std::find(names.begin(), names.end(), property.name) != names.end();
        if (!isNamed && std::find(found.begin(), found.end(), property) == found.end()) {
            found.push_back(std::move(property));
        }
    }
    return found;
}

TEST(StoredDifferences, NameAllPropertiesThatAreReadDifferently)
{
    const Texts lines{"VERSION:2.1",
                      "VERSION:3.0",
                      "FN:Ann",
                      "FN:A\\nn",
                      "FN;CHARSET=ISO-8859-1:\xE4",
                      "FN:\xE4",
                      "fn:Ann",
                      "N:Lee;Ann;;;",
                      "N:Lee;Ann\\;;;;",
                      "UID:1",
                      "UID:2",
                      "REV:2024-01-01",
                      "a.UID:1",
                      "a.X-ABLabel:one",
                      "a.X-ABLabel:two",
                      "b.X-ABLabel:two",
                      "X-ABLabel:three",
                      "a.TEL:1",
                      "A.TEL:1",
                      "b.X-ABDATE:2020-01-01",
                      "TEL;TYPE=home:tel:1",
                      "TEL;TYPE=\"home,voice\":1",
                      "TEL;X=\"a:b",
                      "TEL;X=\"a:b\":1",
                      "NICKNAME:a,b",
                      "NICKNAME:b,a",
                      "CATEGORIES:",
                      "ADR;LABEL=a:;;",
                      "X-SOCIALPROFILE;X-USER=ann:",
                      " continued",
                      "\tUID:1",
                      " \"b:c=",
                      " ",
                      " END:VCARD",
                      "",
                      "NOTE;ENCODING=QUOTED-PRINTABLE:a=3Db",
                      "NOTE;ENCODING=QUOTED-PRINTABLE:a=3Db=",
                      "NOTE;X=\"QUOTED-PRINTABLE:a=",
                      "NOTE:a=",
                      "NOTE:a\\nb",
                      "NOTE",
                      "PHOTO;BASE64:AAAA",
                      "PHOTO;ENCODING=b:",
                      "PHOTO:data:image/png;base64,AAAA",
                      "AAAA",
                      "AGENT:",
                      "BEGIN:VCARD",
                      "END:VCARD",
                      "\uFEFFFN:Bob",
                      "TEL:1\rTEL:2",
                      "TEL:1\r\r",
                      "no property"};
    std::mt19937 random(14);
    const auto number = [&](std::size_t count) { return random() % count; };
    std::size_t compared = 0;
    std::size_t different = 0;
    for (int i = 0; i < 20'000; ++i) {
        Texts one{"FN:Ann"};
        for (auto count = number(8); count > 0; --count) {
            one.push_back(lines[number(lines.size())]);
        }
        auto other = one;
        for (auto count = number(3); count > 0; --count) {
            other[number(other.size())] = lines[number(lines.size())];
        }
        if (number(3) == 0) {
            other.insert(other.begin() + static_cast<std::ptrdiff_t>(number(other.size() + 1)),
                         lines[number(lines.size())]);
        }
        if (number(3) == 0) {
            std::swap(other[number(other.size())], other[number(other.size())]);
        }
        Texts found;
        for (const auto& card : {cardOf(one), cardOf(other)}) {
            // What the book has as the card.
            CardReader reader;
            CardReader::Cards read;
            reader.read(card, CardReader::Text::Bytes, read);
            if (read.ranges.size() == 1) {
                const auto& range = read.ranges[0];
                found.push_back(card.substr(range.begin, range.end - range.begin));
            }
        }
        const auto names = found.size() == 2 ? differences(found) : std::nullopt;
        if (!names) {
            continue;
        }
        ++compared;
        different += names->empty() ? 0 : 1;
        const auto expected = withoutNames(found[0], *names);
        const auto actual = withoutNames(found[1], *names);
        ASSERT_TRUE(
            std::is_permutation(expected.begin(), expected.end(), actual.begin(), actual.end()))
            << found[0] << found[1];
    }
    EXPECT_GT(compared, 2000U);
    EXPECT_GT(different, 1000U);
}

}  // namespace
}  // namespace dunmora::test
