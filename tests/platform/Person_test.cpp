#include "platform/Person.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace dunmora {
namespace {

using namespace std::chrono_literals;
using std::chrono::sys_seconds;

static_assert(sizeof(OptionalText) == sizeof(std::string_view));
static_assert(sizeof(OptionalTime) == sizeof(sys_seconds));
static_assert(sizeof(OptionalPhones) == sizeof(PhoneList));
static_assert(std::is_trivially_copyable_v<Person> && std::is_trivially_destructible_v<Person>);

TEST(Person, LacksEveryValueThatTheBookDoesNotHave)
{
    const Person person;

    EXPECT_FALSE(person.firstName.has_value());
    EXPECT_FALSE(person.lastName);
    EXPECT_EQ(person.nickname, std::nullopt);
    EXPECT_EQ(person.modified, std::nullopt);
    EXPECT_EQ(person.phones.has_value(), false);
    EXPECT_EQ(person.firstName.value_or("none"), "none");
}

TEST(Person, HasAnEmptyTextWhateverItsAddress)
{
    EXPECT_EQ(OptionalText(""), OptionalText(std::string_view()));
    EXPECT_TRUE(OptionalText(std::string_view()).has_value());
    EXPECT_EQ(OptionalText(std::string_view()).value_or("none"), "");
    EXPECT_TRUE(OptionalText(std::optional(std::string_view())).has_value());
    EXPECT_NE(OptionalText(""), OptionalText());
}

TEST(Person, HasAnEmptyListWhateverItsAddress)
{
    const std::vector<LabelledPhone> none;

    const OptionalPhones phones = PhoneList(none);

    ASSERT_TRUE(phones.has_value());
    EXPECT_TRUE(phones->empty());
    EXPECT_FALSE(OptionalPhones().has_value());
}

TEST(Person, ReturnsTheValueThatWasStored)
{
    const std::string name = "Ann";
    const LabelledPhone phone{"Home", "555-0100"};

    Person person;
    person.firstName = name;
    person.modified = sys_seconds(7s);
    person.phones = PhoneList(&phone, 1);

    EXPECT_EQ(person.firstName->data(), name.data());
    EXPECT_EQ(*person.firstName, "Ann");
    EXPECT_EQ(person.firstName.value_or("none"), "Ann");
    EXPECT_EQ(*person.modified, sys_seconds(7s));
    EXPECT_EQ(person.phones->data(), &phone);
    EXPECT_EQ(*person.phones->front().label, "Home");
}

TEST(Person, ForgetsAValue)
{
    Person person;
    person.firstName = "Ann";
    person.modified = sys_seconds(0s);

    person.firstName = std::nullopt;
    person.modified = std::nullopt;

    EXPECT_FALSE(person.firstName.has_value());
    EXPECT_FALSE(person.modified.has_value());
}

TEST(Person, ComparesWithOptionalValuesAsTheyDoAmongThemselves)
{
    const std::optional<std::string> noString;
    const std::optional<sys_seconds> noTime;

    EXPECT_TRUE(OptionalText() == OptionalText());
    EXPECT_FALSE(OptionalText("Ann") == OptionalText("Bob"));
    EXPECT_TRUE(OptionalText() == noString);
    EXPECT_TRUE(noString == OptionalText());
    EXPECT_FALSE(noString == OptionalText(""));
    EXPECT_TRUE(std::optional<std::string>("Ann") == OptionalText("Ann"));
    EXPECT_TRUE(noTime == OptionalTime());
    EXPECT_FALSE(OptionalTime(sys_seconds(7s)) == noTime);
    EXPECT_TRUE(OptionalText("Ann") == "Ann");
    EXPECT_FALSE(OptionalText() == "");
}

TEST(Person, ConvertsToAndFromOptionalValues)
{
    const std::optional<std::string_view> text = OptionalText("Ann");
    const std::optional<std::string_view> missing = OptionalText();
    const OptionalText again = text;
    const OptionalText stillMissing = missing;

    EXPECT_EQ(text, std::optional<std::string_view>("Ann"));
    EXPECT_EQ(missing, std::nullopt);
    EXPECT_EQ(again, "Ann");
    EXPECT_FALSE(stillMissing.has_value());
}

}  // namespace
}  // namespace dunmora
