#include "engine/ContactRecord.h"

#include <array>
#include <gtest/gtest.h>
#include <string_view>

namespace dunmora::test {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

constexpr std::array<std::string_view, 7> kTexts = {"uid",  "fname", "lname", "nickname",
                                                    "home", "work",  "mobile"};

TEST(ContactRecord, ReturnsEachTextUnderItsKey)
{
    ContactRecord record;
    for (const auto key : kTexts) {
        record.setObject(key, key);
    }

    for (const auto key : kTexts) {
        EXPECT_EQ(record.objectForKey(key), ContactValue(key));
        EXPECT_EQ(record.text(key), key);
    }
}

TEST(ContactRecord, HasNeitherDateNorMarkBeforeTheyAreStored)
{
    const ContactRecord record;

    EXPECT_EQ(record.objectForKey("modified"), std::nullopt);
    EXPECT_EQ(record.objectForKey("check"), std::nullopt);
    EXPECT_FALSE(record.isChecked());
}

TEST(ContactRecord, KeepsTheDateAndTheMark)
{
    ContactRecord record;
    record.setObject(sys_seconds(seconds(7)), "modified");
    record.setObject(true, "check");

    EXPECT_EQ(record.objectForKey("modified"), ContactValue(sys_seconds(seconds(7))));
    EXPECT_EQ(record.objectForKey("check"), ContactValue(true));
    EXPECT_TRUE(record.isChecked());

    record.setObject(false, "check");

    EXPECT_EQ(record.objectForKey("check"), ContactValue(false));
    EXPECT_FALSE(record.isChecked());
}

TEST(ContactRecord, HasNothingUnderAKeyThatRecordsDoNotHave)
{
    ContactRecord record;
    record.setObject("x", "email");

    EXPECT_EQ(record.objectForKey("email"), std::nullopt);
    EXPECT_EQ(record.text("email"), "");
    EXPECT_EQ(record.text("check"), "");
}

TEST(ContactRecord, IgnoresAValueOfTheWrongType)
{
    ContactRecord record;
    record.setObject(true, "fname");
    record.setObject("yes", "check");
    record.setObject("today", "modified");

    EXPECT_EQ(record.objectForKey("fname"), ContactValue(std::string_view("")));
    EXPECT_EQ(record.objectForKey("check"), std::nullopt);
    EXPECT_EQ(record.objectForKey("modified"), std::nullopt);
}

}  // namespace
}  // namespace dunmora::test
