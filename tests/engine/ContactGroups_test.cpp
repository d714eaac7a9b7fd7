#include "engine/ContactGroups.h"

#include "base/ContactFields.h"
#include "engine/MatchKey.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora::test {
namespace {

using Texts = std::vector<std::string>;

class ContactGroupsTest : public testing::Test {
protected:
    /// The choice of these match fields.
    static MatchFieldChoice choiceOf(std::initializer_list<std::string_view> fields)
    {
        MatchFieldChoice choice;
        for (const auto field : fields) {
            choice.set(contactField(field).match->place);
        }
        return choice;
    }

    /// Stores a person under the uid, whose first letter is also the first name.
    void store(const std::string& uid)
    {
        contacts_[uid].setObject(std::string_view(uid).substr(0, 1), kContactFirstName);
    }

    void add(ContactGroups& groups, std::size_t position, const MatchFieldChoice& choice) const
    {
        const auto key = matchKey(*contacts_.at(position), choice);
        groups.add(position, choice, key, TextIndex::hashOf(key));
    }

    /// Stores people with these uids and groups them by the first letter of the uid.
    ContactGroups groupsOf(const Texts& uids)
    {
        for (const auto& uid : uids) {
            store(uid);
        }
        ContactGroups groups(contacts_);
        for (std::size_t position = 0; position < uids.size(); ++position) {
            add(groups, position, choiceOf({kContactFirstName}));
        }
        return groups;
    }

    static Texts keysOf(const ContactGroups& groups)
    {
        Texts keys;
        for (const auto& group : groups) {
            keys.push_back(group.key());
        }
        return keys;
    }

    static Texts uidsOf(const ContactGroups::Uids& group)
    {
        Texts uids;
        for (const auto uid : group) {
            uids.emplace_back(uid);
        }
        return uids;
    }

    ContactGroups::Contacts contacts_;
};

TEST_F(ContactGroupsTest, AreInTheOrderOfTheirFirstMembers)
{
    const auto groups = groupsOf({"b1", "a1", "b2", "c1", "a2", "b3"});

    EXPECT_EQ(keysOf(groups), (Texts{"b-", "a-", "c-"}));
    EXPECT_EQ(groups.size(), 3U);
}

TEST_F(ContactGroupsTest, ListTheirMembersInTheOrderOfAdding)
{
    const auto groups = groupsOf({"b1", "a1", "b2", "c1", "a2", "b3"});

    EXPECT_EQ(uidsOf(*groups.find("b-")), (Texts{"b1", "b2", "b3"}));
    EXPECT_EQ(uidsOf(*groups.find("a-")), (Texts{"a1", "a2"}));
    EXPECT_EQ(uidsOf(*groups.find("c-")), Texts{"c1"});
    EXPECT_EQ(groups.find("b-")->size(), 3U);
    EXPECT_TRUE(groups.find("a-")->areSeveral());
    EXPECT_FALSE(groups.find("c-")->areSeveral());
    EXPECT_FALSE(groups.find("d-"));
    std::vector<Texts> all;
    for (const auto& group : groups) {
        all.push_back(uidsOf(group.value));
    }
    EXPECT_EQ(all, (std::vector<Texts>{{"b1", "b2", "b3"}, {"a1", "a2"}, {"c1"}}));
}

TEST_F(ContactGroupsTest, ReturnWhereTheContactsHaveTheirMembers)
{
    const auto groups = groupsOf({"b1", "a1", "b2"});
    const auto group = *groups.find("b-");

    auto member = group.begin();
    EXPECT_EQ(member.position(), 0U);
    ++member;
    EXPECT_EQ(member.position(), 2U);
    ++member;
    EXPECT_EQ(member, group.end());
    EXPECT_TRUE(groups.areOf(contacts_));
}

TEST_F(ContactGroupsTest, CountThePeopleInGroupsOfTwoAndMore)
{
    EXPECT_EQ(groupsOf({"a1", "b1", "c1"}).duplicates(), 0U);
    contacts_.clear();
    EXPECT_EQ(groupsOf({"b1", "a1", "b2", "c1", "a2", "b3"}).duplicates(), 5U);
}

TEST_F(ContactGroupsTest, StillListPeopleWhoWereErased)
{
    const auto groups = groupsOf({"a1", "a2"});

    contacts_.erase("a1");

    EXPECT_EQ(uidsOf(*groups.find("a-")), (Texts{"a1", "a2"}));
    EXPECT_EQ(keysOf(groups), Texts{"a-"});
    EXPECT_TRUE(groups.areOf(contacts_));
}

TEST_F(ContactGroupsTest, StillListPeopleWhoHaveBeenClearedAway)
{
    const auto groups = groupsOf({"a1", "a2"});

    contacts_.clear();
    store("b3");

    EXPECT_EQ(uidsOf(*groups.find("a-")), (Texts{"a1", "a2"}));
    EXPECT_EQ(keysOf(groups), Texts{"a-"});
    EXPECT_FALSE(groups.areOf(contacts_));
}

TEST_F(ContactGroupsTest, LeaveOutThePositionsOfPeopleErasedBefore)
{
    for (const auto* uid : {"a1", "a2", "a3"}) {
        store(uid);
    }
    contacts_.erase("a2");
    ContactGroups groups(contacts_);

    for (auto contact = contacts_.begin(); contact != contacts_.end(); ++contact) {
        add(groups, contact.position(), choiceOf({kContactFirstName}));
    }

    EXPECT_EQ(uidsOf(*groups.find("a-")), (Texts{"a1", "a3"}));
}

TEST_F(ContactGroupsTest, KeepTheKeysOfThoseWhoWereComparedByOtherFields)
{
    for (const auto* uid : {"a1", "b1", "a2", "b2", "a3"}) {
        store(uid);
    }
    const auto firstName = choiceOf({kContactFirstName});
    const auto nothing = choiceOf({});
    ContactGroups groups(contacts_);

    add(groups, 0, firstName);
    add(groups, 1, firstName);
    add(groups, 2, nothing);
    add(groups, 3, nothing);
    add(groups, 4, firstName);

    EXPECT_EQ(keysOf(groups), (Texts{"a-", "b-", ""}));
    EXPECT_EQ(uidsOf(*groups.find("a-")), (Texts{"a1", "a3"}));
    EXPECT_EQ(uidsOf(*groups.find("")), (Texts{"a2", "b2"}));
}

TEST_F(ContactGroupsTest, AreOneWhenDifferentFieldsMakeTheSameKey)
{
    contacts_["1"].setObject("A-B", kContactFirstName);
    contacts_["2"].setObject("A", kContactFirstName);
    contacts_["2"].setObject("B", kContactLastName);
    ContactGroups groups(contacts_);

    add(groups, 0, choiceOf({kContactFirstName}));
    add(groups, 1, choiceOf({kContactFirstName, kContactLastName}));

    EXPECT_EQ(keysOf(groups), Texts{"A-B-"});
    EXPECT_EQ(uidsOf(*groups.find("A-B-")), (Texts{"1", "2"}));
}

TEST_F(ContactGroupsTest, AreNoneAfterClear)
{
    auto groups = groupsOf({"a1", "a2"});

    groups.clear();

    EXPECT_EQ(groups.size(), 0U);
    EXPECT_EQ(keysOf(groups), Texts{});
    EXPECT_EQ(groups.duplicates(), 0U);
    EXPECT_FALSE(groups.find("a-"));
}

}  // namespace
}  // namespace dunmora::test
