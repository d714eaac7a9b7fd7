#include "review/SubstituteName.h"

#include "engine/ContactRecord.h"
#include "tests/review/Cards.h"
#include "text/DisplayText.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

TEST(SubstituteName, IsTheFirstTextOfACardThatIsNotBlank)
{
    const std::vector<CardProperty> properties{
        text("TEL", "555-0100"), text("EMAIL", "ann@example.org"),
        structured("ORG", {"Acme", "", "Sales"}), text("FN", "Acme Ltd")};

    EXPECT_EQ(substituteName(card(properties)), "Acme Ltd");
    EXPECT_EQ(substituteName(card({properties[0], properties[1], properties[2]})), "Acme, Sales");
    EXPECT_EQ(substituteName(card({properties[0], properties[1]})), "ann@example.org");
    EXPECT_EQ(substituteName(card({properties[0], text("NOTE", "x")})), "555-0100");
    EXPECT_EQ(substituteName(card({text("FN", " "), structured("ORG", {"\u00A0", ""}),
                                   text("EMAIL", ""), properties[0]})),
              "555-0100");
    EXPECT_EQ(substituteName(card({text("NOTE", "x")}, {"Choir"})), "");
}

TEST(SubstituteName, IsOneLineAndBounded)
{
    EXPECT_EQ(substituteName(card({text("FN", " Lee\n&  Sons ")})), "Lee & Sons");
    EXPECT_EQ(substituteName(card({text("FN", std::string(1'000'000, 'x'))})),
              std::string(kMaxShownBytes, 'x') + "…");
}

TEST(SubstituteName, IsForPeopleWhoseThreeNamesAreBlank)
{
    ContactRecord contact;
    contact.setObject(std::string_view("555-0100"), kContactHome);
    EXPECT_TRUE(hasBlankName(contact));

    contact.setObject(std::string_view("\u3000"), kContactLastName);
    EXPECT_TRUE(hasBlankName(contact));

    for (const auto key : {kContactFirstName, kContactLastName, kContactNickname}) {
        auto named = contact;
        named.setObject(std::string_view("Ann"), key);
        EXPECT_FALSE(hasBlankName(named)) << key;
    }
}

}  // namespace
}  // namespace dunmora::test
