#include "review/PersonName.h"

#include "engine/ContactRecord.h"
#include "platform/PlatformError.h"
#include "tests/review/Cards.h"
#include "text/DisplayText.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

/// The name of a person with these texts and no others.
std::string nameOf(std::initializer_list<std::pair<std::string_view, std::string_view>> texts)
{
    ContactRecord contact;
    for (const auto& [key, text] : texts) {
        contact.setObject(text, key);
    }
    return personName(contact);
}

TEST(PersonName, IsTheFirstAndTheLastName)
{
    EXPECT_EQ(nameOf({{kContactFirstName, "Ann"}, {kContactLastName, "Lee"}}), "Ann Lee");
    EXPECT_EQ(nameOf({{kContactFirstName, "Ann"}, {kContactNickname, "Annie"}}), "Ann");
    EXPECT_EQ(nameOf({{kContactLastName, "Lee"}, {kContactNickname, "Annie"}}), "Lee");
}

TEST(PersonName, IsTheNicknameOrANumberOfAPersonWithoutOne)
{
    EXPECT_EQ(nameOf({{kContactNickname, "Annie"}, {kContactHome, "1"}}), "Annie");
    EXPECT_EQ(nameOf({{kContactHome, "1"}, {kContactWork, "2"}}), "1");
    EXPECT_EQ(nameOf({{kContactWork, "2"}, {kContactMobile, "3"}}), "2");
}

TEST(PersonName, IgnoresTextsThatShowNothing)
{
    EXPECT_EQ(nameOf({{kContactFirstName, " "}, {kContactLastName, "Lee"}}), "Lee");
    EXPECT_EQ(nameOf({{kContactFirstName, " \n"}, {kContactMobile, "3"}}), "3");
    EXPECT_EQ(nameOf({{kContactFirstName, "\u202E\u202C"}, {kContactNickname, "Annie"}}), "Annie");
    EXPECT_EQ(nameOf({{kContactFirstName, " Ann "}, {kContactLastName, "\tLee"}}), "Ann Lee");
}

/// A book that cannot be reached.
class LostBook final : public CardSource {
public:
    std::string cards(std::span<const Person* const> /*people*/) const override { return {}; }
    std::optional<PersonCard> card(std::string_view /*uid*/) const override
    {
        throw PlatformError("The server does not respond.");
    }
};

TEST(PersonName, IsWhatTheWholeCardOffersWhenTheNamesAreBlank)
{
    FakeCards cards;
    cards.byUid["7"] = card({text("FN", "Acme"), text("TEL", "5")});
    ContactRecord contact;
    contact.setObject(std::string_view("7"), kContactUid);
    contact.setObject(std::string_view(" "), kContactFirstName);
    contact.setObject(std::string_view("1"), kContactHome);
    EXPECT_EQ(personName(contact, &cards), "Acme");
    EXPECT_EQ(personName(contact, nullptr), "1");

    const LostBook lost;
    EXPECT_EQ(personName(contact, &lost), "1");

    contact.setObject(std::string_view("Annie"), kContactNickname);
    EXPECT_EQ(personName(contact, &cards), "Annie");
    EXPECT_EQ(cards.readings, 1);
}

TEST(PersonName, IsBounded)
{
    const std::string megabyte(1'000'000, 'x');
    const auto cut = std::string(kMaxShownBytes, 'x') + "…";

    EXPECT_EQ(nameOf({{kContactFirstName, megabyte}, {kContactLastName, megabyte}}),
              cut + " " + cut);
    EXPECT_EQ(nameOf({{kContactHome, megabyte}}), cut);
}

TEST(PersonName, IsNeverTheUid)
{
    EXPECT_EQ(nameOf({{kContactUid, "7"}}), "");
}

}  // namespace
}  // namespace dunmora::test
