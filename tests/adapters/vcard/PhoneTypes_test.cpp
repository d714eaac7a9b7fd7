#include "adapters/vcard/PhoneTypes.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

std::string label(std::initializer_list<std::string_view> types)
{
    PhoneTypes phoneTypes;
    for (const auto type : types) {
        phoneTypes.add(type);
    }
    return std::string(phoneTypes.label().value_or("none"));
}

TEST(PhoneTypes, FollowTheTableOfLabels)
{
    EXPECT_EQ(label({"HOME", "FAX"}), "_$!<HomeFAX>!$_");
    EXPECT_EQ(label({"WORK", "FAX"}), "_$!<WorkFAX>!$_");
    EXPECT_EQ(label({"FAX"}), "_$!<OtherFAX>!$_");
    EXPECT_EQ(label({"FAX", "HOME", "WORK"}), "_$!<HomeFAX>!$_");
    EXPECT_EQ(label({"PAGER", "WORK"}), "_$!<Pager>!$_");
    EXPECT_EQ(label({"IPHONE", "CELL"}), "iPhone");
    EXPECT_EQ(label({"CELL", "WORK"}), "work mobile");
    EXPECT_EQ(label({"CELL", "HOME"}), "home mobile");
    EXPECT_EQ(label({"CELL", "HOME", "WORK"}), "work mobile");
    EXPECT_EQ(label({"CELL"}), "_$!<Mobile>!$_");
    EXPECT_EQ(label({"MAIN", "WORK"}), "_$!<Main>!$_");
    EXPECT_EQ(label({"WORK", "HOME"}), "home work");
    EXPECT_EQ(label({"HOME"}), "_$!<Home>!$_");
    EXPECT_EQ(label({"WORK"}), "_$!<Work>!$_");
    EXPECT_EQ(label({"OTHER"}), "_$!<Other>!$_");
    EXPECT_EQ(label({"ISDN", "CAR"}), "ISDN");
    EXPECT_EQ(label({"X-Boat"}), "Boat");
    EXPECT_EQ(label({"HOME", "X-Boat"}), "_$!<Home>!$_");
}

TEST(PhoneTypes, HaveNoLabelForHowANumberIsUsedOrEncoded)
{
    EXPECT_EQ(label({}), "none");
    for (const auto* type : {"PREF", "voice", "Msg", "TEXT", "TEXTPHONE", "VIDEO", "INTERNET",
                             "QUOTED-PRINTABLE", "BASE64", "8BIT", ""}) {
        EXPECT_EQ(label({type}), "none") << type;
        EXPECT_EQ(label({type, "home"}), "_$!<Home>!$_") << type;
    }
}

TEST(PhoneTypes, AreSplitAtCommasEvenInsideQuotes)
{
    EXPECT_EQ(label({"HOME,VOICE"}), "_$!<Home>!$_");
    EXPECT_EQ(label({"\"voice,work\""}), "_$!<Work>!$_");
    EXPECT_EQ(label({"\"home\",\"cell\""}), "home mobile");
    EXPECT_EQ(label({"HOME,TYPE=CELL"}), "home mobile");
    EXPECT_EQ(label({" home , cell "}), "home mobile");
    EXPECT_EQ(label({",,"}), "none");
}

TEST(PhoneTypes, IgnoreCase)
{
    EXPECT_EQ(label({"cElL"}), "_$!<Mobile>!$_");
    EXPECT_EQ(label({"x-boat"}), "boat");
}

}  // namespace
}  // namespace dunmora::test
