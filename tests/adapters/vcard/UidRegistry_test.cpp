#include "adapters/vcard/UidRegistry.h"

#include "tests/adapters/vcard/BookTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

using Uids = std::vector<std::string>;

Uids numberedUids(std::size_t count)
{
    Uids uids(count);
    for (std::size_t i = 0; i < count; ++i) {
        uids[i] = "uid" + std::to_string(i);
    }
    return uids;
}

/// People with these UIDs, which must outlive them.
std::vector<Person> peopleWith(const Uids& uids)
{
    std::vector<Person> people(uids.size());
    std::transform(uids.begin(), uids.end(), people.begin(), [](const std::string& uid) {
        Person person;
        person.uid = uid;
        return person;
    });
    return people;
}

bool assignAll(UidRegistry& registry, const std::vector<Person>& people, std::size_t threads)
{
    std::vector<std::uint64_t> hashes;
    hashes.reserve(people.size());
    for (const auto& person : people) {
        hashes.push_back(TextIndex::hashOf(person.uid));
    }
    return registry.assignAll(people, hashes, threads);
}

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
    const auto hash = TextIndex::hashOf("a");
    const auto hashOfNone = TextIndex::hashOf("");
    registry.announce(hash);
    registry.announce(hash);
    registry.announce(hashOfNone);

    EXPECT_EQ(registry.assign("a", hash, "card of Ann"), "a");
    EXPECT_EQ(other.assign("a", "card of Ann"), "a");
    EXPECT_EQ(registry.assign("a", hash, "card of Ben"), other.assign("a", "card of Ben"));
    EXPECT_EQ(registry.assign("", hashOfNone, "card of Cid"), other.assign("", "card of Cid"));
    EXPECT_EQ(registry.find("a"), 0U);
}

TEST(UidRegistry, KeepsAllIdsWhenThereAreMoreThanReserved)
{
    UidRegistry registry;
    registry.reserve(10);
    const auto uids = numberedUids(1000);

    for (const auto& uid : uids) {
        EXPECT_EQ(registry.assign(uid, "card"), uid);
    }

    for (std::size_t i = 0; i < uids.size(); ++i) {
        EXPECT_EQ(registry.find(uids[i]), i);
        EXPECT_NE(registry.assign(uids[i], "card of another"), uids[i]);
    }
}

TEST(UidRegistry, AssignsAllUidsAtOnceAsOneAfterAnother)
{
    for (const std::size_t count : {0, 1, 2, 1000, 5000}) {
        for (const std::size_t threads : {1, 2, 3, 7}) {
            UidRegistry registry;
            const auto uids = numberedUids(count);
            const auto people = peopleWith(uids);

            ASSERT_TRUE(assignAll(registry, people, threads)) << count;

            for (std::size_t i = 0; i < count; ++i) {
                ASSERT_EQ(registry.find(uids[i]), i) << count << " on " << threads;
            }
            EXPECT_FALSE(registry.find("uid"));
            EXPECT_EQ(registry.assign("another", "card"), "another");
            EXPECT_EQ(registry.find("another"), count);
            if (count > 0) {
                EXPECT_NE(registry.assign(uids.back(), "card"), uids.back());
            }
        }
    }
}

TEST(UidRegistry, AssignsNothingAtOnceWhenUidsAreMissingOrEqual)
{
    const auto unique = numberedUids(3000);
    for (const auto* odd : {"", "uid0", "uid2998"}) {
        for (const std::size_t threads : {1, 2, 3}) {
            auto uids = unique;
            uids.back() = odd;
            const auto people = peopleWith(uids);
            UidRegistry registry;

            EXPECT_FALSE(assignAll(registry, people, threads)) << odd;

            EXPECT_FALSE(registry.find(uids.front()));
            UidRegistry other;
            for (const auto& uid : uids) {
                ASSERT_EQ(registry.assign(uid, "card"), other.assign(uid, "card"));
            }
        }
    }
}

TEST(UidRegistry, AssignsUidsAtOnceThatHaveNoPlaceInTheirPartOfTheIndex)
{
    const Uids uids = {"a", "b", "c", "d", "e", "f"};
    // Six ids have 16 slots, of which one of two threads fills the first eight.
    const auto people = peopleWith(uids);
    const std::vector<std::uint64_t> hashes = {7, 7, 7, 1, 8, 15};
    UidRegistry registry;
    UidRegistry withEqualOnes;

    auto equalOnes = people;
    equalOnes[2].uid = "b";

    EXPECT_TRUE(registry.assignAll(people, hashes, 2));
    EXPECT_FALSE(withEqualOnes.assignAll(equalOnes, hashes, 2));

    EXPECT_NE(registry.assign("b", 7, "card"), "b");
    EXPECT_NE(registry.assign("c", 7, "card"), "c");
    EXPECT_EQ(withEqualOnes.assign("b", 7, "card"), "b");
}

TEST(UidRegistry, AssignsNothingAtOnceAfterOtherCards)
{
    const Uids uids = {"b"};
    const auto people = peopleWith(uids);
    UidRegistry registry;
    registry.assign("a", "card");

    EXPECT_FALSE(assignAll(registry, people, 2));

    EXPECT_EQ(registry.find("a"), 0U);
    EXPECT_FALSE(registry.find("b"));
}

TEST(UidRegistry, KeepsIdsThatWereCopiedWhenThePeopleGo)
{
    const auto uids = numberedUids(100);
    auto people = peopleWith(uids);
    UidRegistry registry;
    ASSERT_TRUE(assignAll(registry, people, 2));
    registry.assign("later", "card");

    registry.copyIds();
    people.clear();
    people.shrink_to_fit();
    registry.copyIds();

    EXPECT_EQ(registry.find("uid0"), 0U);
    EXPECT_EQ(registry.find("uid99"), 99U);
    EXPECT_EQ(registry.find("later"), 100U);
    EXPECT_NE(registry.assign("uid7", "card"), "uid7");
    EXPECT_FALSE(registry.find("uid100"));
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

TEST_F(BookUidsTest, AreTheCardsOwnInALargeBook)
{
    // More than are assigned on one thread.
    const auto own = numberedUids(12'000);
    std::string text;
    std::string others;
    for (const auto& uid : own) {
        text += card(uid);
        others += card("other-" + uid);
    }
    write(folder() / "a.vcf", text);
    // So many that the list of people moves.
    write(folder() / "b.vcf", others);
    write(folder() / "c.vcf", card("last") + card("uid7"));

    const auto uids = uidsIn(folder());

    ASSERT_EQ(uids.size(), 24'002U);
    EXPECT_TRUE(std::equal(own.begin(), own.end(), uids.begin()));
    EXPECT_EQ(uids[12'000], "other-uid0");
    EXPECT_EQ(uids[24'000], "last");
    EXPECT_EQ(uids.back().substr(0, 5), "uid7-");
}

TEST_F(BookUidsTest, FindTheCardsOfALargeBookAfterADeletion)
{
    std::string text;
    for (const auto& uid : numberedUids(12'000)) {
        text += card(uid);
    }
    write(file(), text);
    VCardAddressBook book(file());
    book.readPeople();

    ask(book, {"uid5", "uid11999"});
    book.save();

    EXPECT_EQ(book.people().size(), 11'998U);
    for (const auto* uid : {"uid0", "uid5", "uid6", "uid11998", "uid11999"}) {
        const auto found = book.card(uid);
        ASSERT_TRUE(found) << uid;
        const auto& properties = found->properties;
        EXPECT_TRUE(std::any_of(properties.begin(), properties.end(), [&](const auto& property) {
            return property.components == std::vector<std::string>{uid};
        })) << uid;
    }
}

TEST_F(BookUidsTest, OfEqualUidsInALargeBookAreThoseOfASmallOne)
{
    std::string many;
    for (const auto& uid : numberedUids(12'000)) {
        many += card(uid);
    }
    const auto odd = card("uid7") + "BEGIN:VCARD\r\nFN:Ann\r\nEND:VCARD\r\n" + card("last");
    write(folder() / "large.vcf", many + odd);
    write(folder() / "small.vcf", card("uid7") + odd);

    const auto large = uidsIn(folder() / "large.vcf");
    const auto small = uidsIn(folder() / "small.vcf");

    ASSERT_EQ(large.size(), 12'003U);
    EXPECT_EQ(Uids(large.end() - 3, large.end()), Uids(small.end() - 3, small.end()));
    EXPECT_EQ(large[7], "uid7");
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
