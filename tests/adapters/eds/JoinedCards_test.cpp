#include "adapters/eds/JoinedCards.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

using Texts = std::vector<std::string>;

std::vector<ContactText> contactsWith(const Texts& cards)
{
    std::vector<ContactText> contacts;
    contacts.reserve(cards.size());
    for (const auto& card : cards) {
        contacts.push_back({"", card});
    }
    return contacts;
}

void expectEqual(const std::optional<Person>& person, const std::optional<Person>& expected)
{
    ASSERT_EQ(person.has_value(), expected.has_value());
    if (!expected) {
        return;
    }
    EXPECT_EQ(person->uid, expected->uid);
    EXPECT_EQ(person->firstName, expected->firstName);
    EXPECT_EQ(person->lastName, expected->lastName);
    EXPECT_EQ(person->nickname, expected->nickname);
    EXPECT_EQ(person->modified, expected->modified);
    ASSERT_EQ(person->phones.has_value(), expected->phones.has_value());
    const auto phones = expected->phones.value_or(PhoneList());
    ASSERT_EQ(person->phones.value_or(PhoneList()).size(), phones.size());
    for (std::size_t i = 0; i < phones.size(); ++i) {
        EXPECT_EQ((*person->phones)[i].label, phones[i].label);
        EXPECT_EQ((*person->phones)[i].value, phones[i].value);
    }
}

/// Expects each card to be read as if it were alone, whatever is before and after it.
void expectReadAsIfAlone(const Texts& cards, CardReader::Method method = CardReader::kUsualMethod)
{
    const JoinedCards joined(contactsWith(cards));
    CardReader reader(method);
    const auto contents = joined.read(reader);

    ASSERT_EQ(contents.size(), cards.size());
    for (std::size_t i = 0; i < cards.size(); ++i) {
        SCOPED_TRACE("card " + std::to_string(i) + ":\n" + cards[i]);
        CardReader alone;
        CardReader::Cards found;
        alone.read(cards[i], CardReader::Text::Utf8, found);

        EXPECT_EQ(joined.card(i), cards[i]);
        expectEqual(contents[i].person,
                    found.people.size() == 1 ? std::optional(found.people.front()) : std::nullopt);
        EXPECT_EQ(contents[i].hasList, !found.groups.empty());
    }
}

const std::string kAnn =
    "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:ann\r\nN:Lee;Ann;;;\r\nNICKNAME:Annie\r\n"
    "TEL;TYPE=HOME:1\r\nTEL;TYPE=WORK:2\r\nREV:2024-05-01T10:00:00Z\r\nEND:VCARD";
const std::string kBen = "BEGIN:VCARD\r\nN:Ray;Ben;;;\r\nEND:VCARD";

TEST(JoinedCards, AreReadLikeCardsAlone)
{
    expectReadAsIfAlone({});
    expectReadAsIfAlone({kAnn});
    expectReadAsIfAlone({kAnn, kBen, kAnn});
    expectReadAsIfAlone({kAnn + "\r\n", kBen + "\n", kAnn + "\r", kBen + "\r\n\r\n", kAnn});
}

TEST(JoinedCards, AreReadOnSeveralThreads)
{
    expectReadAsIfAlone(
        {kAnn, kBen, "BEGIN:VCARD\r\nKIND:group\r\nFN:All\r\nEND:VCARD", kAnn, kBen}, {2, 100});
}

TEST(JoinedCards, AreReadLikeCardsAloneInEveryOrder)
{
    const Texts cards{
        kAnn,
        kBen + "\r\n",
        "BEGIN:VCARD\r\nKIND:group\r\nFN:All\r\nEND:VCARD",
        "",
        "\r\n",
        "no card",
        "BEGIN:VCARD\r\nEND:VCARD",
        "BEGIN:VCARD\r\nFN:Cut",
        "BEGIN:VCARD\r\nFN:Cut\r",
        "BEGIN:VCARD\r\nFN:Agent's\r\nAGENT:",
        "BEGIN:VCARD\r\nFN:Agent's\r\nAGENT:\r\nBEGIN:VCARD\r\nFN:Agent\r\nEND:VCARD",
        "BEGIN:VCARD\r\nNOTE;ENCODING=QUOTED-PRINTABLE:cut=",
        " folded\r\n" + kAnn,
        " " + kAnn,
        "\n" + kBen,
        kAnn + "\r\n more",
        kAnn + "\r\nBEGIN:VCARD",
        kAnn + "\r\n" + kBen,
        "\xEF\xBB\xBF" + kAnn,
        "END:VCARD",
        "TEL:3\r\nEND:VCARD",
        "begin:vcard\nFN:Small\nend:vcard",
    };
    for (const auto& first : cards) {
        for (const auto& second : cards) {
            for (const auto& third : cards) {
                expectReadAsIfAlone({first, second, third});
                if (testing::Test::HasFailure()) {
                    return;
                }
            }
        }
    }
}

TEST(JoinedCards, MayBeLists)
{
    const JoinedCards joined(contactsWith(
        {kAnn, "BEGIN:VCARD\r\nKIND:group\r\nFN:All\r\nMEMBER:ann\r\nEND:VCARD", kBen}));
    CardReader reader;

    const auto contents = joined.read(reader);

    EXPECT_EQ(contents.at(0).person.value().firstName, "Ann");
    EXPECT_FALSE(contents.at(1).person);
    EXPECT_TRUE(contents.at(1).hasList);
    EXPECT_EQ(contents.at(2).person.value().firstName, "Ben");
    EXPECT_FALSE(contents.at(2).hasList);
}

}  // namespace
}  // namespace dunmora::test
