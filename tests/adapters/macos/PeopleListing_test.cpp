#include "adapters/macos/PeopleListing.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace dunmora::test {
namespace {

using namespace std::chrono_literals;

const PersonSource kSource{"macos:", "Contacts"};

FrameworkPerson person(const std::string& uid)
{
    FrameworkPerson person;
    person.uid = uid;
    person.firstName = "Ann";
    return person;
}

TEST(PeopleListing, ShowsPeopleInTheirOrder)
{
    const PeopleListing listing({person("b"), person("a")}, kSource);

    ASSERT_EQ(listing.people().size(), 2U);
    EXPECT_EQ(listing.people()[0].uid, "b");
    EXPECT_EQ(listing.people()[1].uid, "a");
}

TEST(PeopleListing, SaysWhereEveryoneIsFrom)
{
    const PeopleListing listing({person("a"), person("b")}, kSource);

    EXPECT_EQ(listing.people()[0].source, &kSource);
    EXPECT_EQ(listing.people()[1].source, &kSource);
}

TEST(PeopleListing, SkipsPeopleWithoutAUniqueUid)
{
    const PeopleListing listing({person("a"), person(""), person("a"), person("b")}, kSource);

    ASSERT_EQ(listing.people().size(), 2U);
    EXPECT_EQ(listing.people()[1].uid, "b");
    EXPECT_EQ(listing.skipped().size(), 2U);
}

TEST(PeopleListing, RoundsTimesDownToSeconds)
{
    auto early = person("a");
    early.modified = -0.5s;
    auto late = person("b");
    late.modified = 1714557600.9s;

    const PeopleListing listing({early, late}, kSource);

    EXPECT_EQ(listing.people()[0].modified, std::chrono::sys_seconds(-1s));
    EXPECT_EQ(listing.people()[1].modified, std::chrono::sys_seconds(1714557600s));
}

TEST(PeopleListing, DistinguishesAnEmptyListOfPhonesFromNone)
{
    auto empty = person("a");
    empty.phones.emplace();

    const PeopleListing listing({empty, person("b")}, kSource);

    ASSERT_TRUE(listing.people()[0].phones.has_value());
    EXPECT_TRUE(listing.people()[0].phones->empty());
    EXPECT_FALSE(listing.people()[1].phones.has_value());
}

TEST(PeopleListing, FindsPeopleByItsOwnViewsOnly)
{
    const PeopleListing listing({person("a"), person("b")}, kSource);
    const PeopleListing other({person("a"), person("b")}, kSource);

    ASSERT_NE(listing.find(listing.people()[1]), nullptr);
    EXPECT_EQ(listing.find(listing.people()[1])->uid, "b");
    EXPECT_EQ(listing.find(other.people()[1]), nullptr);
    EXPECT_EQ(PeopleListing().find(other.people()[1]), nullptr);
}

TEST(PeopleListing, KeepsItsViewsWhenItIsMoved)
{
    auto ann = person("a");
    ann.phones = {{std::nullopt, "555-0100"}};
    PeopleListing first({ann}, kSource);

    const PeopleListing second(std::move(first));

    EXPECT_EQ(second.people()[0].uid, "a");
    EXPECT_EQ(second.people()[0].firstName, "Ann");
    EXPECT_EQ(second.people()[0].phones->front().value, "555-0100");
    EXPECT_EQ(second.find(second.people()[0])->uid, "a");
}

}  // namespace
}  // namespace dunmora::test
