#include "adapters/vcard/StoredProperties.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {
namespace {

using Texts = std::vector<std::string>;

std::string cardOf(const Texts& lines)
{
    std::string card = "BEGIN:VCARD\r\n";
    for (const auto& line : lines) {
        card += line + "\r\n";
    }
    return card + "END:VCARD\r\n";
}

/// Each property as "name|text"; nullopt when the card cannot be split.
std::optional<Texts> split(std::string_view card)
{
    std::vector<StoredProperty> properties{{"left from before", ""}};
    if (!splitStored(card, properties)) {
        return std::nullopt;
    }
    Texts texts;
    for (const auto& property : properties) {
        texts.push_back(std::string(property.name) + "|" + std::string(property.text));
    }
    return texts;
}

bool canBeSplit(const Texts& lines)
{
    return split(cardOf(lines)).has_value();
}

TEST(StoredProperties, HaveTheirNamesAndAllTheirLines)
{
    EXPECT_EQ(split(cardOf({"FN:Ann", "item1.Tel;TYPE=home:1", "a.b.X-Long-Name:2", "NOTE:one",
                            " two", "\tthree", "N:Lee"})),
              (Texts{"FN|FN:Ann", "Tel|item1.Tel;TYPE=home:1", "X-Long-Name|a.b.X-Long-Name:2",
                     "NOTE|NOTE:one\r\n two\r\n\tthree", "N|N:Lee"}));
    EXPECT_EQ(split("BEGIN:VCARD\nFN:Ann\nend : vcard"), Texts{"FN|FN:Ann"});
    EXPECT_EQ(split(cardOf({})), Texts{});
}

TEST(StoredProperties, NeedAWholeHeadInTheFirstLine)
{
    EXPECT_TRUE(canBeSplit({"NOTE;X=1:a"}));
    EXPECT_FALSE(canBeSplit({"NOTE;X=1", " :a"}));
    EXPECT_FALSE(canBeSplit({"NOTE", " :a"}));
    EXPECT_FALSE(canBeSplit({"no property"}));
    EXPECT_FALSE(canBeSplit({" FN:Ann"}));
    EXPECT_FALSE(canBeSplit({"FN:Ann", ""}));
    EXPECT_FALSE(canBeSplit({"FN :Ann"}));
    EXPECT_FALSE(canBeSplit({".FN:Ann"}));
    EXPECT_FALSE(canBeSplit({"item1.:Ann"}));
    EXPECT_FALSE(canBeSplit({":Ann"}));
    EXPECT_FALSE(canBeSplit({"FÑ:Ann"}));
}

TEST(StoredProperties, AreNotThoseOfACardWithAnotherCardInside)
{
    EXPECT_FALSE(canBeSplit({"FN:Ann", "AGENT:", "BEGIN:VCARD", "FN:Ben", "END:VCARD"}));
    EXPECT_FALSE(canBeSplit({"FN:Ann", "agent:BEGIN:VCARD", "FN:Ben", "END:VCARD", "TEL:1"}));
    EXPECT_FALSE(canBeSplit({"FN:Ann", " BEGIN:VCARD"}));
    EXPECT_FALSE(canBeSplit({"FN:Ann", " END:VCARD"}));
    EXPECT_FALSE(canBeSplit({"FN:Ann", "END:VCARD", "TEL:1"}));
    EXPECT_FALSE(canBeSplit({"BEGIN:other"}));
    EXPECT_FALSE(canBeSplit({"end:other"}));
}

TEST(StoredProperties, AreNotJoinedByAnEqualsSignOfAnotherEncoding)
{
    EXPECT_TRUE(canBeSplit({"NOTE:a=", "TEL:1"}));
    EXPECT_TRUE(canBeSplit({"PHOTO;ENCODING=b:AAA=", "TEL:1"}));
    EXPECT_TRUE(canBeSplit({"NOTE;QUOTED-PRINTABLE:a=3D", "TEL:1"}));
    EXPECT_FALSE(canBeSplit({"NOTE;QUOTED-PRINTABLE:a=", "TEL:1"}));
    EXPECT_FALSE(canBeSplit({"NOTE;encoding=quoted-printable:a=", "TEL:1"}));
    EXPECT_FALSE(canBeSplit({"NOTE;ENCODING=QUOTED-PRINTABLE:a", " b=", "TEL:1"}));
}

TEST(StoredProperties, EndWithTheCard)
{
    EXPECT_FALSE(split("BEGIN:VCARD\r\nFN:Ann\r\n"));
    EXPECT_FALSE(split("BEGIN:VCARD"));
    EXPECT_FALSE(split(""));
}

TEST(StoredProperties, MayNameThePerson)
{
    EXPECT_TRUE(showsName("N:;Ann;;;"));
    EXPECT_TRUE(showsName("fn:李"));
    EXPECT_FALSE(showsName("FNX:Ann"));
    EXPECT_FALSE(showsName("TEL:1"));
    EXPECT_FALSE(showsName("FN"));
    EXPECT_FALSE(showsName("N:;;;;"));
    EXPECT_FALSE(showsName("FN: "));
    EXPECT_FALSE(showsName("FN:\u00A0"));
    EXPECT_FALSE(showsName("FN:\xA0"));
    EXPECT_FALSE(showsName("FN:\\n"));
    EXPECT_FALSE(showsName("FN:A\r\n nn"));
    EXPECT_FALSE(showsName("FN:data:;base64,"));
    EXPECT_FALSE(showsName("FN;X=1:Ann"));
    EXPECT_FALSE(showsName("item1.FN:Ann"));
}

}  // namespace
}  // namespace dunmora::test
