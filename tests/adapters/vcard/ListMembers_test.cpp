#include "adapters/vcard/CardProperties.h"
#include "adapters/vcard/ListMembers.h"
#include "tests/adapters/vcard/ReadText.h"

#include <gtest/gtest.h>

#include <string>

namespace dunmora::test {
namespace {

const std::string kUuid = "4fbe8971-0bc3-424c-9c26-36c3e1eff6b1";

std::string list(const std::string& name, const std::string& member)
{
    return card("4.0", "KIND:group\r\nFN:" + name + "\r\n" + member + "\r\n");
}

Texts listsOf(const ListMembers& members, const std::string& uid)
{
    return members.listsOf(
        readProperties(card30("FN:Ann\r\nUID:" + uid + "\r\n"), CardReader::Text::Bytes).value());
}

ListMembers membersOf(const Texts& lists)
{
    ListMembers members;
    for (const auto& text : lists) {
        members.add(text, CardReader::Text::Bytes);
    }
    return members;
}

TEST(ListMembers, AreFoundByTheirUid)
{
    const auto members =
        membersOf({list("Choir", "MEMBER:a\r\nMEMBER:b"), list("Club", "MEMBER:b")});

    EXPECT_EQ(listsOf(members, "a"), (Texts{"Choir"}));
    EXPECT_EQ(listsOf(members, "b"), (Texts{"Choir", "Club"}));
    EXPECT_EQ(listsOf(members, "c"), Texts());
    EXPECT_EQ(listsOf(members, "A"), Texts());
}

TEST(ListMembers, AreFoundByAUuidInAnyForm)
{
    const auto members = membersOf(
        {list("Choir", "MEMBER:urn:uuid:" + kUuid),
         list("Club", "X-ADDRESSBOOKSERVER-MEMBER:URN:UUID:4FBE8971-0BC3-424C-9C26-36C3E1EFF6B1")});

    EXPECT_EQ(listsOf(members, kUuid), (Texts{"Choir", "Club"}));
    EXPECT_EQ(listsOf(members, "urn:uuid:" + kUuid), (Texts{"Choir", "Club"}));
    EXPECT_EQ(listsOf(members, "4FBE8971-0BC3-424C-9C26-36C3E1EFF6B1"), (Texts{"Choir", "Club"}));
}

TEST(ListMembers, AreInAListOnceEvenIfItRepeatsThem)
{
    EXPECT_EQ(listsOf(membersOf({list("Choir", "MEMBER:a\r\nMEMBER:urn:uuid:a")}), "a"),
              (Texts{"Choir"}));
}

TEST(ListMembers, AreNobodyWithoutAUid)
{
    const auto members = membersOf({list("Choir", "MEMBER:")});

    EXPECT_EQ(
        members.listsOf(readProperties(card30("FN:Ann\r\n"), CardReader::Text::Bytes).value()),
        Texts());
}

}  // namespace
}  // namespace dunmora::test
