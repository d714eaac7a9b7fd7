#include "base/NotificationCenter.h"
#include "engine/MatchKey.h"
#include "platform/PlatformError.h"
#include "tests/engine/ContactsParserTest.h"
#include "tests/fakes/NotificationRecorder.h"

#include <algorithm>

namespace dunmora::test {
namespace {

// Match keys.

class MatchKeyTest : public ContactsParserTest {
protected:
    void choose(bool nickname, bool firstName, bool lastName, bool home, bool work, bool mobile)
    {
        settings_.setFilterNickname(nickname);
        settings_.setFilterFirstname(firstName);
        settings_.setFilterLastname(lastName);
        settings_.setFilterHome(home);
        settings_.setFilterWork(work);
        settings_.setFilterMobile(mobile);
    }
};

TEST_F(MatchKeyTest, JoinsFirstAndLastNameInAFreshInstallation)
{
    EXPECT_EQ(key(FakePerson()), "Ann-Lee-");
}

TEST_F(MatchKeyTest, PutsTheChosenFieldsInTheirFixedOrder)
{
    choose(true, true, true, true, true, true);

    EXPECT_EQ(key(FakePerson()), "Annie-Ann-Lee-555-0100-555-0101-555-0102-");
}

TEST_F(MatchKeyTest, LeavesOutFieldsThatAreOffWithTheirSeparators)
{
    choose(true, false, false, false, false, true);
    FakePerson contact;
    contact.nickname = std::nullopt;
    contact.phones = {{{"Mobile", "+1 555 0100"}}};

    EXPECT_EQ(key(contact), "-+1 555 0100-");
}

TEST_F(MatchKeyTest, IsSeparatorsOnlyWhenTheChosenFieldsAreEmpty)
{
    FakePerson contact;
    contact.firstName = std::nullopt;
    contact.lastName = "";
    contact.nickname = std::nullopt;
    contact.phones = std::nullopt;
    EXPECT_EQ(key(contact), "--");

    choose(true, true, true, true, true, true);
    EXPECT_EQ(key(contact), "------");
}

TEST_F(MatchKeyTest, IsEmptyWhenNoFieldIsChosen)
{
    choose(false, false, false, false, false, false);

    EXPECT_EQ(key(FakePerson()), "");
}

TEST_F(MatchKeyTest, IsKnownFromAllOthers)
{
    ContactRecord ann;
    ann.setObject("Ann", kContactFirstName);
    ann.setObject("Lee", kContactLastName);
    ann.setObject("Annie", kContactNickname);
    const auto choice = chosenMatchFields();

    EXPECT_TRUE(hasMatchKey(ann, choice, "Ann-Lee-"));
    for (const auto* other :
         {"", "Ann", "Ann-", "Ann-Lee", "Ann-Lee--", "Ann-Lee-x", "Ann-LeexLee-", "AnnxLee-",
          "Ann-Ben-", "Ben-Lee-", "AnnLee--", "--"}) {
        EXPECT_FALSE(hasMatchKey(ann, choice, other)) << other;
    }
    EXPECT_TRUE(hasMatchKey(ann, {}, ""));
    EXPECT_FALSE(hasMatchKey(ann, {}, "-"));
}

TEST_F(MatchKeyTest, KeepsCaseBlanksAndPunctuation)
{
    choose(false, true, false, false, false, false);
    EXPECT_EQ(key(named("1", "ANN")), "ANN-");
    EXPECT_EQ(key(named("1", " ann ")), " ann -");

    choose(false, false, false, true, false, false);
    EXPECT_EQ(key(withPhones(named("1", "Ann"), {{"Home", "(555) 0100"}})), "(555) 0100-");
}

TEST_F(MatchKeyTest, FollowsTheSettingsAtOnce)
{
    EXPECT_EQ(key(FakePerson()), "Ann-Lee-");

    settings_.setFilterLastname(false);

    EXPECT_EQ(key(FakePerson()), "Ann-");
}

TEST_F(MatchKeyTest, ReadsEveryFlagForEachContact)
{
    loadAndFind({named("1", "Ann"), named("2", "Ben"), named("3", "Cid")});

    EXPECT_EQ(platform_.userDefaults.reads(), 3 * 6);
}

// Grouping.

TEST_F(ContactsParserTest, ListsGroupsOfTwoAndMoreOneAfterTheOther)
{
    loadAndFind({named("1", "Ann"), named("2", "Ben"), named("3", "Cid"), named("4", "Ann"),
                 named("5", "Cid"), named("6", "Ann")});

    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "4", "6", "3", "5"}));
}

TEST_F(ContactsParserTest, DoesNotListPeopleWithoutADuplicate)
{
    loadAndFind({named("1", "Ann")});

    EXPECT_TRUE(engine_.duplicates().empty());
    EXPECT_EQ(checkedUids(), Uids{});
}

TEST_F(ContactsParserTest, ListsEveryoneOnceAgainOnASecondSearch)
{
    loadAndFind({named("1", "Ann"), named("2", "Ann")});

    engine_.findDupes();

    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "2"}));
}

TEST_F(ContactsParserTest, KeepsNamesOfDifferentCaseApart)
{
    loadAndFind({named("1", "Ann"), named("2", "ANN")});

    EXPECT_TRUE(engine_.duplicates().empty());
}

TEST_F(ContactsParserTest, PutsPeopleWhoseChosenFieldsAreAllEmptyIntoOneGroup)
{
    auto nameless = named("1", "");
    nameless.lastName = std::nullopt;
    auto another = nameless;
    another.uid = "2";
    another.firstName = std::nullopt;

    loadAndFind({nameless, named("3", "Ann"), another});

    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "2"}));
}

TEST_F(ContactsParserTest, PutsEveryoneIntoOneGroupWhenNoFieldIsChosen)
{
    settings_.setFilterFirstname(false);
    settings_.setFilterLastname(false);

    loadAndFind({named("1", "Ann"), named("2", "Ben"), named("3", "Cid")});

    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "2", "3"}));
}

TEST_F(ContactsParserTest, ReportsASearchStepByStep)
{
    bookHolds({named("1", "Ann"), named("2", "Ben"), named("3", "Ann")});
    engine_.load();
    const NotificationRecorder recorder;

    engine_.findDupes();

    EXPECT_EQ(recorder.lines(),
              (Lines{"msgShowMessage Sorting contacts...", "msgProgress 0/3", "msgProgress 1/3",
                     "msgProgress 2/3", "msgShowMessage Finding duplicated contacts...",
                     "msgProgress 0/2", "msgProgress 1/2", "msgFinished finding"}));
}

TEST_F(ContactsParserTest, SharesOneProgressBetweenBothPassesOfASearch)
{
    bookHolds({named("1", "Ann"), named("2", "Ben")});
    engine_.load();
    std::vector<Payload> payloads;
    NotificationCenter::defaultCenter().addObserver(
        this, kMsgProgress, [&](const Notification& n) { payloads.push_back(n.userInfo); });

    engine_.findDupes();
    NotificationCenter::defaultCenter().removeObserver(this, kMsgProgress);

    ASSERT_EQ(payloads.size(), 4U);
    EXPECT_TRUE(std::all_of(payloads.begin(), payloads.end(),
                            [&](const Payload& each) { return each == payloads.front(); }));
}

TEST_F(ContactsParserTest, RemembersTheFieldsOfTheSearch)
{
    loadAndFind({person("1", "Ann")});
    const auto fields = chosenMatchFields();

    Settings::settings().setFilterMobile(true);

    EXPECT_EQ(engine_.searchedFields(), fields);
    engine_.findDupes();
    EXPECT_EQ(engine_.searchedFields(), chosenMatchFields());
}

TEST_F(ContactsParserTest, LeavesNeitherRowsNorGroupsWhenASearchThrows)
{
    loadAndFind({named("1", "Ann"), named("2", "Ann")});
    NotificationCenter::defaultCenter().addObserver(
        this, kMsgProgress, [](const Notification&) { throw PlatformError("Stop."); });

    EXPECT_THROW(engine_.findDupes(), PlatformError);
    NotificationCenter::defaultCenter().removeObserver(this, kMsgProgress);

    EXPECT_TRUE(engine_.duplicates().empty());
    EXPECT_EQ(engine_.contacts().size(), 2U);
}

TEST_F(ContactsParserTest, LeavesNoRowsWhenASearchStopsBetweenTwoGroups)
{
    bookHolds({named("1", "Ann"), named("2", "Ann"), named("3", "Ben"), named("4", "Ben")});
    engine_.load();
    std::size_t rowsAtTheStop = 0;
    NotificationCenter::defaultCenter().addObserver(this, kMsgProgress, [&](const Notification&) {
        rowsAtTheStop = engine_.duplicates().size();
        if (rowsAtTheStop == 2) {
            throw PlatformError("Stop.");
        }
    });

    EXPECT_THROW(engine_.findDupes(), PlatformError);
    NotificationCenter::defaultCenter().removeObserver(this, kMsgProgress);

    EXPECT_EQ(rowsAtTheStop, 2U);
    EXPECT_TRUE(engine_.duplicates().empty());
    engine_.markDeletedContacts();
    EXPECT_EQ(checkedUids(), Uids{});
}

// What is proposed for deletion.

TEST_F(ContactsParserTest, KeepsTheFirstCopyWithAPhone)
{
    loadAndFind({withMobile(named("1", "Ann")), withMobile(named("2", "Ann"))});

    EXPECT_EQ(checkedUids(), Uids{"2"});
}

TEST_F(ContactsParserTest, ChecksEveryCopyBeforeTheFirstWithAPhone)
{
    loadAndFind({named("1", "Ann"), named("2", "Ann"), withMobile(named("3", "Ann"))});

    EXPECT_EQ(checkedUids(), (Uids{"1", "2"}));
}

TEST_F(ContactsParserTest, ChecksEveryCopyWhenNobodyHasAPhone)
{
    loadAndFind({named("1", "Ann"), named("2", "Ann")});

    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "2"}));
    EXPECT_EQ(checkedUids(), (Uids{"1", "2"}));
}

TEST_F(ContactsParserTest, CountsAnyOfTheThreeNumbersAsAPhone)
{
    for (const auto* label : {"home", "work", "mobile"}) {
        loadAndFind({named("1", "Ann"), withPhones(named("2", "Ann"), {{label, "555"}})});

        EXPECT_EQ(checkedUids(), Uids{"1"}) << label;
    }
}

TEST_F(ContactsParserTest, DoesNotCountANumberWhoseLabelMatchesNoWord)
{
    loadAndFind(
        {withPhones(named("1", "Ann"), {{"_$!<Pager>!$_", "555"}}), withMobile(named("2", "Ann"))});

    EXPECT_EQ(checkedUids(), Uids{"1"});
}

TEST_F(ContactsParserTest, NeverRemovesAMark)
{
    loadAndFind({withMobile(named("1", "Ann")), withMobile(named("2", "Ann"))});
    engine_.contacts().find("1")->setObject(true, "check");

    engine_.findDupes();

    EXPECT_EQ(checkedUids(), (Uids{"1", "2"}));
}

TEST_F(ContactsParserTest, ForgetsMarksWithTheNextLoad)
{
    loadAndFind({named("1", "Ann"), named("2", "Ann")});

    engine_.load();

    EXPECT_EQ(checkedUids(), Uids{});
}

// The records of the rows.

using RowRecordTest = ContactsParserTest;

TEST_F(RowRecordTest, AreThoseUnderTheUidsOfTheRows)
{
    loadAndFind({named("1", "Ben"), named("2", "Ann"), named("3", "Ben"), named("4", "Ann")});

    ASSERT_EQ(engine_.duplicates().size(), 4U);
    for (std::size_t row = 0; row < engine_.duplicates().size(); ++row) {
        EXPECT_EQ(engine_.recordInRow(row), engine_.contacts().find(engine_.duplicates()[row]));
    }
    EXPECT_EQ(engine_.recordInRow(4), nullptr);
}

TEST_F(RowRecordTest, AreAtThePositionsOfTheSearch)
{
    loadAndFind({named("1", "Ben"), named("2", "Ann"), named("3", "Ben"), named("4", "Ann")});
    engine_.deleteContacts({"3"});

    ASSERT_EQ(engine_.duplicates(), (Uids{"1", "2", "4"}));
    EXPECT_EQ(engine_.positionInRow(0), 0U);
    EXPECT_EQ(engine_.positionInRow(1), 1U);
    EXPECT_EQ(engine_.positionInRow(2), 3U);
}

TEST_F(RowRecordTest, AreFoundAgainAfterOtherPeopleWereStored)
{
    loadAndFind({named("1", "Ann"), named("2", "Ann")});
    for (int i = 0; i < 1'000; ++i) {
        engine_.contacts()["new" + std::to_string(i)];
    }

    EXPECT_EQ(engine_.recordInRow(0), engine_.contacts().find("1"));
    EXPECT_EQ(engine_.recordInRow(1), engine_.contacts().find("2"));
}

TEST_F(RowRecordTest, AreThoseOfThePeopleAfterALoadInAnotherOrder)
{
    loadAndFind({named("1", "Ann"), named("2", "Ann"), named("3", "Ben"), named("4", "Ben")});
    bookHolds({named("4", "Ben"), named("2", "Ann")});

    engine_.load();

    ASSERT_EQ(engine_.duplicates(), (Uids{"1", "2", "3", "4"}));
    EXPECT_EQ(engine_.recordInRow(0), nullptr);
    EXPECT_EQ(engine_.recordInRow(1), engine_.contacts().find("2"));
    EXPECT_EQ(engine_.recordInRow(2), nullptr);
    EXPECT_EQ(engine_.recordInRow(3), engine_.contacts().find("4"));
    EXPECT_EQ(uidsInGroup("Ann-Lee-"), (Uids{"1", "2"}));
}

TEST_F(RowRecordTest, AreNullForPeopleWhoWereRemoved)
{
    loadAndFind({named("1", "Ann"), named("2", "Ann")});
    engine_.contacts().erase("1");
    EXPECT_EQ(engine_.recordInRow(0), nullptr);

    engine_.contacts()["1"];
    EXPECT_EQ(engine_.recordInRow(0), engine_.contacts().find("1"));

    engine_.contacts().clear();
    EXPECT_EQ(engine_.recordInRow(0), nullptr);
}

TEST_F(RowRecordTest, FollowAnotherSearch)
{
    loadAndFind({named("1", "Ann"), named("2", "Ann"), named("3", "Ben"), named("4", "Ben")});

    engine_.contacts().find("1")->setObject("Ben", kContactFirstName);
    engine_.contacts().find("2")->setObject("Cid", kContactFirstName);
    engine_.findDupes();

    ASSERT_EQ(engine_.duplicates(), (Uids{"1", "3", "4"}));
    EXPECT_EQ(engine_.recordInRow(0), engine_.contacts().find("1"));
    EXPECT_EQ(engine_.recordInRow(1), engine_.contacts().find("3"));

    engine_.reset();
    EXPECT_EQ(engine_.recordInRow(0), nullptr);
}

}  // namespace
}  // namespace dunmora::test
