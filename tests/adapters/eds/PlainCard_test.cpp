#include "adapters/eds/PlainCard.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

namespace dunmora::test {
namespace {

/// A card with these lines between BEGIN and END, as the service returns it.
std::string card(std::string_view lines)
{
    return "BEGIN:VCARD\r\nVERSION:3.0\r\n" + std::string(lines) + "END:VCARD";
}

TEST(PlainCard, HasTheUidOfItsLine)
{
    EXPECT_EQ(plainUid(card("UID:pas-id-54A1B2C300000000\r\nFN:Ann\r\n")),
              "pas-id-54A1B2C300000000");
    EXPECT_EQ(plainUid(card("FN:Ann\r\nuid:http://example.com/a%40b/1?x=y\r\n")),
              "http://example.com/a%40b/1?x=y");
    EXPECT_EQ(plainUid("begin:vcard\nUID:a\nend:vcard\n"), "a");
}

TEST(PlainCard, MayHaveFoldedValuesGroupsAndParameters)
{
    EXPECT_EQ(plainUid(card("PHOTO;ENCODING=b;TYPE=JPEG:AAAA\r\n BBBB==\r\nUID:a\r\n"
                            "item1.TEL;X-E164=5,\"+1\";TYPE=HOME:1\r\nNOTE:UID\r\n\t:b\r\n")),
              "a");
}

TEST(PlainCard, IsNoListAndHasAUid)
{
    EXPECT_EQ(plainUid(card("UID:a\r\nX-EVOLUTION-LIST:TRUE\r\n")), std::nullopt);
    EXPECT_EQ(plainUid(card("UID:a\r\nitem1.x-evolution-list;X=Y:TRUE\r\n")), std::nullopt);
    EXPECT_EQ(plainUid(card("FN:Ann\r\n")), std::nullopt);
    EXPECT_EQ(plainUid(card("UID:\r\n")), std::nullopt);
}

TEST(PlainCard, HasAUidThatMeansItself)
{
    for (const auto* line : {"UID:a\\,b\r\n", "UID:a;b\r\n", "UID:a,b\r\n", "UID: a\r\n",
                             "UID:a b\r\n", "UID:\u00E4\r\n", "UID:a\r\n b\r\n", "UID;X=Y:a\r\n",
                             "item1.UID:a\r\n", "UID:a\r\nUID:b\r\n", "UID:a\x7F\r\n"}) {
        EXPECT_EQ(plainUid(card(line)), std::nullopt) << line;
    }
}

TEST(PlainCard, HasLinesThatBeginAndEndWhereTheySeemTo)
{
    for (const auto* line : {"NOTE;ENCODING=QUOTED-PRINTABLE:b=\r\n",
                             "NOTE;quoted-printable:b=\r\n",
                             "NOTE;X=\"b:c\":d\r\n",
                             "NOTE:b\\\r\n",
                             "NOTE:b\\\r\n c\r\n",
                             "NOTE:b\rUID:c\r\n",
                             "\r\n",
                             "X-EVO\r\n LUTION-LIST:TRUE\r\n",
                             "NOTE\r\n",
                             "a.b.NOTE:c\r\n",
                             ".NOTE:b\r\n",
                             ":b\r\n",
                             "NO TE:b\r\n",
                             "TEL;TYPE :b\r\n",
                             "TEL;TYPE=\"a:b\r\n",
                             "TEL;\"TYPE\":b\r\n",
                             "TEL;TYPE=\"a\"b:c\r\n",
                             "TEL;;X=b:c\r\n",
                             "TEL;=b:c\r\n",
                             "TEL;:b\r\n",
                             "BEGIN:VCARD\r\n"}) {
        EXPECT_EQ(plainUid(card(std::string(line) + "UID:a\r\n")), std::nullopt) << line;
    }
}

TEST(PlainCard, EndsWithEnd)
{
    EXPECT_EQ(plainUid("BEGIN:VCARD\r\nUID:a\r\n"), std::nullopt);
    EXPECT_EQ(plainUid("BEGIN:VCARD\r\nUID:a\r\nEND:VCARDS"), std::nullopt);
    EXPECT_EQ(plainUid("BEGIN:VCARD\r\nEND:VCARD\r\nUID:a\r\nEND:VCARD"), std::nullopt);
    EXPECT_EQ(plainUid("BEGIN:VCARD\r\nUID:a\r\nEND:VCARD\r\nX-EVOLUTION-LIST:TRUE"), "a");
    EXPECT_EQ(plainUid("UID:a\r\nEND:VCARD"), std::nullopt);
    EXPECT_EQ(plainUid(""), std::nullopt);
}

}  // namespace
}  // namespace dunmora::test
