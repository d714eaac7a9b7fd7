#include "adapters/vcard/UidRegistry.h"

#include "tests/adapters/vcard/BookTest.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

using Uids = std::vector<std::string>;

TEST(UidRegistry, FindsIdsInTheOrderOfTheirAssignment)
{
    UidRegistry registry;
    EXPECT_FALSE(registry.find("a"));
    registry.assign("a", "x");
    const auto made = registry.assign("", "y");
    registry.assign("b", "z");

    EXPECT_EQ(registry.find("a"), 0U);
    EXPECT_EQ(registry.find(made), 1U);
    EXPECT_EQ(registry.find("b"), 2U);
    EXPECT_FALSE(registry.find("c"));
}

TEST(UidRegistry, KeepsTheUidOfTheCardUnchanged)
{
    UidRegistry registry;

    EXPECT_EQ(registry.assign("urn:uuid:1 ", "card"), "urn:uuid:1 ");
    EXPECT_EQ(registry.assign("URN:UUID:1 ", "card"), "URN:UUID:1 ");
}

TEST(UidRegistry, DerivesAnIdFromTheContentOfACardWithoutUid)
{
    UidRegistry registry;
    UidRegistry anotherRun;

    const auto id = registry.assign("", "card of Ann");

    EXPECT_FALSE(id.empty());
    EXPECT_NE(registry.assign("", "card of Ben"), id);
    EXPECT_EQ(anotherRun.assign("", "card of Ben").substr(0, 5), "card-");
    EXPECT_EQ(anotherRun.assign("", "card of Ann"), id);
}

TEST(UidRegistry, AssignsEqualCardsDifferentIdsThatAreTheSameOnEveryRun)
{
    UidRegistry registry;
    UidRegistry anotherRun;
    std::set<std::string> ids;
    for (int i = 0; i < 100; ++i) {
        const auto id = std::string(registry.assign("", "card"));
        EXPECT_EQ(anotherRun.assign("", "card"), id);
        ids.insert(id);
    }

    EXPECT_EQ(ids.size(), 100U);
}

TEST(UidRegistry, DerivesAnIdFromTheContentOfACardWhoseUidIsTaken)
{
    UidRegistry registry;
    UidRegistry anotherRun;
    registry.assign("uid", "card of Ann");
    anotherRun.assign("uid", "card of Ann");
    anotherRun.assign("uid", "card of Cid");

    const auto id = std::string(registry.assign("uid", "card of Ben"));

    EXPECT_NE(id, "uid");
    EXPECT_NE(registry.assign("uid", "card of Ben"), id);
    // Others with the same UID in between do not matter.
    EXPECT_EQ(anotherRun.assign("uid", "card of Ben"), id);
}

TEST(UidRegistry, NeverAssignsAnIdTwiceEvenWhenACardHasADerivedIdAsItsUid)
{
    UidRegistry registry;
    std::set<std::string> ids;
    const auto derived = std::string(registry.assign("", "card"));
    const auto second = derived + "-2";
    ids.insert(derived);

    ids.emplace(registry.assign(derived, "card"));
    ids.emplace(registry.assign(second, "card"));
    ids.emplace(registry.assign("", "card"));
    ids.emplace(registry.assign("", "card"));
    ids.emplace(registry.assign(second, "card"));

    EXPECT_EQ(ids.size(), 6U);
}

TEST(UidRegistry, AssignsAnnouncedUidsAsOthers)
{
    UidRegistry registry;
    UidRegistry other;
    registry.reserve(2);

    // Announced together, before the first is assigned.
    const auto ann = registry.announce("a");
    const auto again = registry.announce("a");
    const auto without = registry.announce("");

    EXPECT_EQ(registry.assign("a", ann, "card of Ann"), "a");
    EXPECT_EQ(other.assign("a", "card of Ann"), "a");
    EXPECT_EQ(registry.assign("a", again, "card of Ben"), other.assign("a", "card of Ben"));
    EXPECT_EQ(registry.assign("", without, "card of Cid"), other.assign("", "card of Cid"));
    EXPECT_EQ(registry.find("a"), 0U);
}

TEST(UidRegistry, KeepsAllIdsWhenThereAreMoreThanReserved)
{
    UidRegistry registry;
    registry.reserve(10);
    std::vector<std::string> uids(1000);
    for (std::size_t i = 0; i < uids.size(); ++i) {
        uids[i] = "uid" + std::to_string(i);
    }

    for (const auto& uid : uids) {
        EXPECT_EQ(registry.assign(uid, registry.announce(uid), "card"), uid);
    }

    for (std::size_t i = 0; i < uids.size(); ++i) {
        EXPECT_EQ(registry.find(uids[i]), i);
        EXPECT_NE(registry.assign(uids[i], "card of another"), uids[i]);
    }
}

class BookUidsTest : public BookTest {};

TEST_F(BookUidsTest, AreTheSameOnEveryRun)
{
    const std::string nameless = "BEGIN:VCARD\r\nFN:Ann\r\nEND:VCARD\r\n";
    write(file(), nameless + card("x") + nameless + card("x") + nameless);

    const auto uids = uidsIn(file());

    EXPECT_EQ(std::set<std::string>(uids.begin(), uids.end()).size(), 5U);
    EXPECT_EQ(uidsIn(file()), uids);
}

TEST_F(BookUidsTest, AreDifferentAcrossTheFilesOfAFolder)
{
    write(folder() / "a.vcf", card("x"));
    write(folder() / "b.vcf", card("x"));
    write(folder() / "c.vcf", card("x"));

    const auto uids = uidsIn(folder());

    EXPECT_EQ(uids.front(), "x");
    EXPECT_EQ(std::set<std::string>(uids.begin(), uids.end()).size(), 3U);
}

TEST_F(BookUidsTest, OfCardsWithoutOneDoNotDependOnTheirPosition)
{
    const std::string ann = "BEGIN:VCARD\r\nFN:Ann\r\nEND:VCARD";
    write(file(), ann + "\r\n" + card("x"));
    const auto first = uidsIn(file()).front();

    write(file(), "junk\r\n" + card("x") + ann);

    EXPECT_EQ(uidsIn(file()).back(), first);
}

TEST_F(BookUidsTest, StayTheSameAfterADeletion)
{
    const std::string same = "BEGIN:VCARD\r\nFN:Ann\r\nEND:VCARD\r\n";
    write(file(), same + same + same);
    VCardAddressBook book(file());
    const auto uids = uidsOf(book.readPeople());

    ask(book, {uids[0]});
    book.save();

    EXPECT_EQ(uidsOf(book.people()), (Uids{uids[1], uids[2]}));
}

TEST_F(BookUidsTest, ReplaceEmptyUids)
{
    write(file(), "BEGIN:VCARD\r\nUID:\r\nEND:VCARD\r\nBEGIN:VCARD\r\nUID:\r\nEND:VCARD\r\n");

    const auto uids = uidsIn(file());

    ASSERT_EQ(uids.size(), 2U);
    EXPECT_FALSE(uids[0].empty());
    EXPECT_NE(uids[0], uids[1]);
}

}  // namespace
}  // namespace dunmora::test
