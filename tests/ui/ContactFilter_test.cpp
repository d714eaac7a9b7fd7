#include "ui/ContactFilter.h"

#include "engine/ContactRecord.h"
#include "tests/fakes/FakeTextFolding.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace dunmora::test {

namespace {

struct Texts {
    std::string_view first = "Ann";
    std::string_view last = "Lee";
    std::string_view nickname = "Annie";
    std::string_view home = "+1 (555) 0100";
    std::string_view work = "555-0199";
    std::string_view mobile = "555-0177";
};

ContactRecord contact(const Texts& texts)
{
    ContactRecord record;
    record.setObject("uid-4711", kContactUid);
    record.setObject(texts.first, kContactFirstName);
    record.setObject(texts.last, kContactLastName);
    record.setObject(texts.nickname, kContactNickname);
    record.setObject(texts.home, kContactHome);
    record.setObject(texts.work, kContactWork);
    record.setObject(texts.mobile, kContactMobile);
    return record;
}

ContactFilter filter(std::string_view typed)
{
    static const FakeTextFolding folding;
    return {typed, folding};
}

bool matches(std::string_view typed, const Texts& texts = {})
{
    return filter(typed).matches(contact(texts));
}

bool narrows(std::string_view next, std::string_view earlier)
{
    return filter(next).narrows(filter(earlier));
}

TEST(ContactFilter, FindsATextAnywhereInANameOrNumber)
{
    EXPECT_TRUE(matches("nn"));
    EXPECT_TRUE(matches("Lee"));
    EXPECT_TRUE(matches("nnie"));
    EXPECT_TRUE(matches("(555)"));
    EXPECT_TRUE(matches("0199"));
    EXPECT_TRUE(matches("0177"));
    EXPECT_FALSE(matches("Bob"));
    EXPECT_FALSE(matches("uid"));
}

TEST(ContactFilter, MatchesEveryoneWhenOnlyBlanksAreTyped)
{
    EXPECT_TRUE(matches(""));
    EXPECT_TRUE(matches("  "));
    EXPECT_TRUE(filter(" \n").isEmpty());
    EXPECT_FALSE(filter("a").isEmpty());
}

TEST(ContactFilter, ReadsFirstAndLastNameAsOneText)
{
    EXPECT_TRUE(matches("ann lee"));
    EXPECT_TRUE(matches(" ann "));
    EXPECT_FALSE(matches("lee annie"));
    EXPECT_FALSE(matches("annlee"));
}

TEST(ContactFilter, DoesNotJoinAMissingName)
{
    EXPECT_FALSE(matches("ann lee", {.last = "", .nickname = "lee"}));
    EXPECT_TRUE(matches("lee", {.first = ""}));
}

TEST(ContactFilter, IgnoresCase)
{
    EXPECT_TRUE(matches("ANN"));
    EXPECT_TRUE(matches("ZO\u00CB", {.first = "Zo\u00EB"}));
}

TEST(ContactFilter, IgnoresHowACharacterIsComposed)
{
    EXPECT_TRUE(matches("zo\u00EB", {.first = "Zoe\u0308"}));
    EXPECT_TRUE(matches("zoe\u0308", {.first = "Zo\u00EB"}));
}

TEST(ContactFilter, FindsAsciiBesideOtherScripts)
{
    EXPECT_TRUE(matches("lee", {.first = "Zo\u00EB"}));
    EXPECT_FALSE(matches("bob", {.first = "Zo\u00EB"}));
}

TEST(ContactFilter, FindsATelephoneNumberByItsDigits)
{
    EXPECT_TRUE(matches("15550100"));
    EXPECT_TRUE(matches("+1-555-0100"));
    EXPECT_TRUE(matches("555 01"));
    EXPECT_TRUE(matches("5550177"));
    EXPECT_FALSE(matches("01005550199")) << "parts of two numbers";
    EXPECT_FALSE(matches("x5550100"));
}

TEST(ContactFilter, FindsDigitsAloneOnlyInNumbers)
{
    EXPECT_FALSE(matches("12", {.nickname = "1-2"}));
    EXPECT_TRUE(matches("1-2", {.nickname = "1-2"}));
    EXPECT_FALSE(matches("-)"));
}

TEST(ContactFilter, ReadsTheDigitsOfEveryScript)
{
    EXPECT_TRUE(matches("12", {.home = "\u0661-\u0662"}));
    EXPECT_TRUE(matches("\u0661\u0662", {.home = "1-2"}));
    EXPECT_FALSE(matches("\u0661\u00EB", {.home = "1-2"}));
}

TEST(ContactFilter, ReadsBreaksAndInvalidBytesAsTheWindowShowsThem)
{
    EXPECT_TRUE(matches("ann lee", {.first = "Ann\xFF", .last = "Ann\nLee"}));
    EXPECT_FALSE(matches("nn lee", {.first = "Ann\xFF"}));
    EXPECT_TRUE(matches("ann\nlee"));
}

TEST(ContactFilter, FindsTheEndOfALongText)
{
    const auto text = std::string(100'000, 'x') + "needle";

    EXPECT_TRUE(matches("needle", {.nickname = text}));
}

TEST(ContactFilter, NarrowsWhenMoreIsTyped)
{
    EXPECT_TRUE(narrows("ann", "an"));
    EXPECT_TRUE(narrows("ann", ""));
    EXPECT_TRUE(narrows("555-01", "555-"));
    EXPECT_TRUE(narrows("5a", "5"));
}

TEST(ContactFilter, DoesNotNarrowWhereAnotherContactCouldMatch)
{
    EXPECT_FALSE(narrows("an", "ann"));
    EXPECT_FALSE(narrows("-5", "-"));
    EXPECT_FALSE(narrows("bob", "ann"));
}

}  // namespace

}  // namespace dunmora::test
