#include "engine/ContactsParser.h"

#include "base/NotificationCenter.h"
#include "base/Settings.h"
#include "platform/PlatformError.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/NotificationRecorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace dunmora::test {
namespace {

using Uids = std::vector<std::string>;
using Lines = std::vector<std::string>;

FakePerson person(const std::string& uid, const std::string& firstName,
                  std::vector<FakePerson::Phone> phones = {})
{
    FakePerson made;
    made.uid = uid;
    made.firstName = firstName;
    made.phones = std::move(phones);
    return made;
}

const std::vector<FakePerson::Phone> kHasPhone = {{"_$!<Mobile>!$_", "555-0100"}};

class ContactsParserTest : public testing::Test {
protected:
    void bookHolds(std::vector<FakePerson> people)
    {
        platform_.addressBook = FakeAddressBook(std::move(people));
    }

    void loadAndFind(std::vector<FakePerson> people)
    {
        bookHolds(std::move(people));
        engine_.load();
        engine_.findDupes();
    }

    std::string key(const FakePerson& contact)
    {
        bookHolds({contact});
        engine_.load();
        return engine_.keyForContact(*engine_.contacts().find(contact.uid));
    }

    Uids checkedUids() const
    {
        Uids uids;
        for (const auto& contact : engine_.contacts()) {
            if (contact.value.isChecked()) {
                uids.push_back(contact.key);
            }
        }
        return uids;
    }

    Uids contactUids() const
    {
        Uids uids;
        for (const auto& contact : engine_.contacts()) {
            uids.push_back(contact.key);
        }
        return uids;
    }

    FakePlatform platform_;
    Settings& settings_ = Settings::settings();
    ContactsParser engine_;
};

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

TEST_F(MatchKeyTest, KeepsCaseBlanksAndPunctuation)
{
    choose(false, true, false, false, false, false);
    EXPECT_EQ(key(person("1", "ANN")), "ANN-");
    EXPECT_EQ(key(person("1", " ann ")), " ann -");

    choose(false, false, false, true, false, false);
    EXPECT_EQ(key(person("1", "Ann", {{"Home", "(555) 0100"}})), "(555) 0100-");
}

TEST_F(MatchKeyTest, FollowsTheSettingsAtOnce)
{
    EXPECT_EQ(key(FakePerson()), "Ann-Lee-");

    settings_.setFilterLastname(false);

    EXPECT_EQ(key(FakePerson()), "Ann-");
}

TEST_F(MatchKeyTest, ReadsEveryFlagAnewForEveryContact)
{
    loadAndFind({person("1", "Ann"), person("2", "Ben"), person("3", "Cid")});

    EXPECT_EQ(platform_.userDefaults.reads(), 3 * 6);
}

// Loading.

TEST_F(ContactsParserTest, IsOneEngineWhoeverAsksFirst)
{
    ContactsParser* fromWorker = nullptr;
    std::thread([&] { fromWorker = &ContactsParser::parser(); }).join();

    EXPECT_EQ(fromWorker, &ContactsParser::parser());
}

TEST_F(ContactsParserTest, StartsWithNobodyAndNoRows)
{
    EXPECT_TRUE(engine_.contacts().empty());
    EXPECT_TRUE(engine_.duplicates().empty());
}

TEST_F(ContactsParserTest, LoadsEveryFieldOfAPerson)
{
    bookHolds({FakePerson()});

    EXPECT_TRUE(engine_.load());

    const auto* record = engine_.contacts().find("uid-ann");
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->text("uid"), "uid-ann");
    EXPECT_EQ(record->text("fname"), "Ann");
    EXPECT_EQ(record->text("lname"), "Lee");
    EXPECT_EQ(record->text("nickname"), "Annie");
    EXPECT_EQ(record->text("home"), "555-0100");
    EXPECT_EQ(record->text("work"), "555-0101");
    EXPECT_EQ(record->text("mobile"), "555-0102");
    EXPECT_EQ(record->objectForKey("modified"), ContactValue(*FakePerson().modified));
    EXPECT_EQ(record->objectForKey("check"), std::nullopt);
}

TEST_F(ContactsParserTest, LoadsMissingNamesAndPhonesAsEmptyTexts)
{
    FakePerson nameless;
    nameless.firstName = nameless.lastName = nameless.nickname = std::nullopt;
    nameless.modified = std::nullopt;
    nameless.phones = std::nullopt;
    bookHolds({nameless});

    engine_.load();

    const auto* record = engine_.contacts().find("uid-ann");
    ASSERT_NE(record, nullptr);
    for (const auto* field : {"fname", "lname", "nickname", "home", "work", "mobile"}) {
        EXPECT_EQ(record->objectForKey(field), ContactValue(std::string_view(""))) << field;
    }
    EXPECT_EQ(record->objectForKey("modified"), std::nullopt);
}

TEST_F(ContactsParserTest, KeepsTheBooksOrder)
{
    bookHolds({person("z", "Zoe"), person("a", "Ann"), person("m", "Moe")});

    engine_.load();

    EXPECT_EQ(contactUids(), (Uids{"z", "a", "m"}));
}

TEST_F(ContactsParserTest, LetsALaterPersonOfTheSameUidReplaceTheEarlier)
{
    auto earlier = person("same", "Ann", kHasPhone);
    auto later = person("same", "Ben");
    later.modified = std::nullopt;
    bookHolds({earlier, later});

    engine_.load();

    EXPECT_EQ(engine_.contacts().size(), 1U);
    const auto& record = *engine_.contacts().find("same");
    EXPECT_EQ(record.text("fname"), "Ben");
    EXPECT_EQ(record.text("mobile"), "");
    EXPECT_EQ(record.objectForKey("modified"), std::nullopt);
}

TEST_F(ContactsParserTest, ReportsALoadStepByStep)
{
    bookHolds({person("1", "Ann"), person("2", "Ben")});
    const NotificationRecorder recorder;

    engine_.load();

    EXPECT_EQ(recorder.lines(), (Lines{"msgShowMessage Loading Contacts...", "msgProgress 0/2",
                                       "msgProgress 1/2", "msgFinished loading"}));
    EXPECT_TRUE(std::all_of(recorder.senders().begin(), recorder.senders().end(),
                            [&](const void* sender) { return sender == &engine_; }));
}

TEST_F(ContactsParserTest, PostsProgressBeforeThePersonIsHandled)
{
    bookHolds({person("1", "Ann"), person("2", "Ben")});
    std::vector<std::size_t> sizes;
    NotificationCenter::defaultCenter().addObserver(
        this, kMsgProgress, [&](const Notification&) { sizes.push_back(contactUids().size()); });

    engine_.load();
    NotificationCenter::defaultCenter().removeObserver(this, kMsgProgress);

    EXPECT_EQ(sizes, (std::vector<std::size_t>{0, 1}));
}

TEST_F(ContactsParserTest, ReportsAnEmptyBookWithoutProgress)
{
    bookHolds({});
    const NotificationRecorder recorder;

    engine_.load();
    engine_.findDupes();

    EXPECT_EQ(recorder.lines(),
              (Lines{"msgShowMessage Loading Contacts...", "msgFinished loading",
                     "msgShowMessage Sorting contacts...",
                     "msgShowMessage Finding duplicated contacts...", "msgFinished finding"}));
    EXPECT_TRUE(engine_.contacts().empty());
    EXPECT_TRUE(engine_.duplicates().empty());
}

TEST_F(ContactsParserTest, KeepsTheRowsOfTheLastSearchThroughALoad)
{
    loadAndFind({person("1", "Ann"), person("2", "Ann")});

    engine_.load();

    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "2"}));
    EXPECT_EQ(checkedUids(), Uids{});
    engine_.markDeletedContacts();
    EXPECT_EQ(checkedUids(), (Uids{"1", "2"}));
}

TEST_F(ContactsParserTest, ForgetsRowsAndGroupsButNoPeopleOnReset)
{
    loadAndFind({person("1", "Ann"), person("2", "Ann")});
    engine_.load();

    engine_.reset();

    EXPECT_TRUE(engine_.duplicates().empty());
    EXPECT_EQ(contactUids(), (Uids{"1", "2"}));
    engine_.markDeletedContacts();
    EXPECT_EQ(checkedUids(), Uids{});
}

TEST_F(ContactsParserTest, LeavesNobodyAndNoRowsWhenTheBookCannotBeRead)
{
    loadAndFind({person("1", "Ann"), person("2", "Ann")});
    platform_.addressBook.onRead = [] { throw PlatformError("The book is gone."); };
    const NotificationRecorder recorder;

    EXPECT_THROW(engine_.load(), PlatformError);

    EXPECT_TRUE(engine_.contacts().empty());
    EXPECT_TRUE(engine_.duplicates().empty());
    EXPECT_EQ(recorder.lines(), Lines{"msgShowMessage Loading Contacts..."});
}

TEST_F(ContactsParserTest, LeavesNeitherRowsNorGroupsWhenASearchIsBrokenOff)
{
    loadAndFind({person("1", "Ann"), person("2", "Ann")});
    NotificationCenter::defaultCenter().addObserver(
        this, kMsgProgress, [](const Notification&) { throw PlatformError("Stop."); });

    EXPECT_THROW(engine_.findDupes(), PlatformError);
    NotificationCenter::defaultCenter().removeObserver(this, kMsgProgress);

    EXPECT_TRUE(engine_.duplicates().empty());
    EXPECT_EQ(engine_.contacts().size(), 2U);
}

TEST_F(ContactsParserTest, HasCallPointsThatExcludeNobody)
{
    engine_.lock();
    engine_.lock();
    std::thread([&] { engine_.lock(); }).join();
    engine_.unlock();

    SUCCEED() << "none of the three waited";
}

// Grouping.

TEST_F(ContactsParserTest, ListsGroupsOfTwoAndMoreOneAfterTheOther)
{
    loadAndFind({person("1", "Ann"), person("2", "Ben"), person("3", "Cid"), person("4", "Ann"),
                 person("5", "Cid"), person("6", "Ann")});

    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "4", "6", "3", "5"}));
}

TEST_F(ContactsParserTest, ListsNobodyWhoStandsAlone)
{
    loadAndFind({person("1", "Ann")});

    EXPECT_TRUE(engine_.duplicates().empty());
    EXPECT_EQ(checkedUids(), Uids{});
}

TEST_F(ContactsParserTest, ListsEveryoneOnceAgainOnASecondSearch)
{
    loadAndFind({person("1", "Ann"), person("2", "Ann")});

    engine_.findDupes();

    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "2"}));
}

TEST_F(ContactsParserTest, KeepsNamesOfDifferentCaseApart)
{
    loadAndFind({person("1", "Ann"), person("2", "ANN")});

    EXPECT_TRUE(engine_.duplicates().empty());
}

TEST_F(ContactsParserTest, PutsPeopleWhoseChosenFieldsAreAllEmptyIntoOneGroup)
{
    auto nameless = person("1", "");
    nameless.lastName = std::nullopt;
    auto another = nameless;
    another.uid = "2";
    another.firstName = std::nullopt;

    loadAndFind({nameless, person("3", "Ann"), another});

    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "2"}));
}

TEST_F(ContactsParserTest, PutsEveryoneIntoOneGroupWhenNoFieldIsChosen)
{
    settings_.setFilterFirstname(false);
    settings_.setFilterLastname(false);

    loadAndFind({person("1", "Ann"), person("2", "Ben"), person("3", "Cid")});

    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "2", "3"}));
}

TEST_F(ContactsParserTest, ReportsASearchStepByStep)
{
    bookHolds({person("1", "Ann"), person("2", "Ben"), person("3", "Ann")});
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
    bookHolds({person("1", "Ann"), person("2", "Ben")});
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

// What is proposed for deletion.

TEST_F(ContactsParserTest, KeepsTheFirstCopyWithAPhone)
{
    loadAndFind({person("1", "Ann", kHasPhone), person("2", "Ann", kHasPhone)});

    EXPECT_EQ(checkedUids(), Uids{"2"});
}

TEST_F(ContactsParserTest, ChecksEveryCopyBeforeTheFirstWithAPhone)
{
    loadAndFind({person("1", "Ann"), person("2", "Ann"), person("3", "Ann", kHasPhone)});

    EXPECT_EQ(checkedUids(), (Uids{"1", "2"}));
}

TEST_F(ContactsParserTest, ChecksEveryCopyWhenNobodyHasAPhone)
{
    loadAndFind({person("1", "Ann"), person("2", "Ann")});

    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "2"}));
    EXPECT_EQ(checkedUids(), (Uids{"1", "2"}));
}

TEST_F(ContactsParserTest, CountsAnyOfTheThreeNumbersAsAPhone)
{
    for (const auto* label : {"home", "work", "mobile"}) {
        loadAndFind({person("1", "Ann"), person("2", "Ann", {{label, "555"}})});

        EXPECT_EQ(checkedUids(), Uids{"1"}) << label;
    }
}

TEST_F(ContactsParserTest, DoesNotCountANumberThatNoWordFits)
{
    loadAndFind({person("1", "Ann", {{"_$!<Pager>!$_", "555"}}), person("2", "Ann", kHasPhone)});

    EXPECT_EQ(checkedUids(), Uids{"1"});
}

TEST_F(ContactsParserTest, NeverTakesAMarkAway)
{
    loadAndFind({person("1", "Ann", kHasPhone), person("2", "Ann", kHasPhone)});
    engine_.contacts().find("1")->setObject(true, "check");

    engine_.findDupes();

    EXPECT_EQ(checkedUids(), (Uids{"1", "2"}));
}

TEST_F(ContactsParserTest, ForgetsMarksWithTheNextLoad)
{
    loadAndFind({person("1", "Ann"), person("2", "Ann")});

    engine_.load();

    EXPECT_EQ(checkedUids(), Uids{});
}

// Deleting.

class DeletionTest : public ContactsParserTest {
protected:
    DeletionTest()
    {
        loadAndFind({person("1", "Ann", kHasPhone), person("2", "Ann"), person("3", "Ben"),
                     person("4", "Ben"), person("5", "Cid")});
    }
};

TEST_F(DeletionTest, RemovesExactlyThePeopleNamedAndSavesOnce)
{
    engine_.deleteContacts({"2", "4"});

    EXPECT_EQ(platform_.addressBook.storedUids(), (Uids{"1", "3", "5"}));
    EXPECT_EQ(platform_.addressBook.savesAsked(), 1U);
    EXPECT_EQ(contactUids(), (Uids{"1", "3", "5"}));
    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "3"}));
}

TEST_F(DeletionTest, ReportsStepsOfTwo)
{
    const NotificationRecorder recorder;

    engine_.deleteContacts({"4", "1", "2"});

    EXPECT_EQ(recorder.lines(),
              (Lines{"msgShowMessage Deleting checked contacts...", "msgProgress 0/3",
                     "msgProgress 2/3", "msgProgress 4/3", "msgFinished deleting"}));
}

TEST_F(DeletionTest, SavesAndReportsWithoutProgressWhenNobodyIsNamed)
{
    const NotificationRecorder recorder;

    engine_.deleteContacts({});

    EXPECT_EQ(recorder.lines(),
              (Lines{"msgShowMessage Deleting checked contacts...", "msgFinished deleting"}));
    EXPECT_EQ(platform_.addressBook.savesAsked(), 1U);
    EXPECT_EQ(platform_.addressBook.storedUids().size(), 5U);
}

TEST_F(DeletionTest, RemovesAPersonNamedTwiceOnce)
{
    const NotificationRecorder recorder;

    engine_.deleteContacts({"2", "2"});

    EXPECT_EQ(recorder.count("msgProgress"), 1U);
    EXPECT_EQ(platform_.addressBook.storedUids(), (Uids{"1", "3", "4", "5"}));
}

TEST_F(DeletionTest, KeepsAPersonInItsCollectionsWhoIsGoneFromTheBookAlready)
{
    platform_.addressBook.removeBehindTheBack("2");

    engine_.deleteContacts({"2", "4"});

    EXPECT_EQ(contactUids(), (Uids{"1", "2", "3", "5"}));
    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "2", "3"}));
    EXPECT_EQ(platform_.addressBook.storedUids(), (Uids{"1", "3", "5"}));
}

TEST_F(DeletionTest, LeavesTheGroupsUntilTheNextSearch)
{
    engine_.deleteContacts({"2"});
    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "3", "4"}));

    engine_.findDupes();

    EXPECT_EQ(engine_.duplicates(), (Uids{"3", "4"}));
}

TEST_F(DeletionTest, ForgetsPeopleBeforeTheBookIsChanged)
{
    std::size_t contactsAtFirstRemoval = 0;
    platform_.addressBook.onRemove = [&] { contactsAtFirstRemoval = engine_.contacts().size(); };

    engine_.deleteContacts({"2"});

    EXPECT_EQ(contactsAtFirstRemoval, 4U);
}

TEST_F(DeletionTest, LetsAFailedRemovalOutWithoutMsgFinished)
{
    platform_.addressBook.onRemove = [] { throw PlatformError("No."); };
    const NotificationRecorder recorder;

    EXPECT_THROW(engine_.deleteContacts({"2"}), PlatformError);

    EXPECT_EQ(recorder.count("msgFinished"), 0U);
    EXPECT_EQ(platform_.addressBook.storedUids().size(), 5U);
}

TEST_F(DeletionTest, LetsAFailedSaveOutAndHasForgottenThePeople)
{
    platform_.addressBook.onSave = [] { throw PlatformError("The disk is full."); };
    const NotificationRecorder recorder;

    EXPECT_THROW(engine_.deleteContacts({"2"}), PlatformError);

    EXPECT_EQ(recorder.count("msgFinished"), 0U);
    EXPECT_EQ(platform_.addressBook.storedUids().size(), 5U);
    EXPECT_EQ(contactUids(), (Uids{"1", "3", "4", "5"}));
}

TEST_F(DeletionTest, ReleasesItsMonitorWhenItFails)
{
    platform_.addressBook.onSave = [] { throw PlatformError("The disk is full."); };
    EXPECT_THROW(engine_.deleteContacts({"2"}), PlatformError);
    platform_.addressBook.onSave = [] {};

    std::thread([&] { engine_.deleteContacts({"4"}); }).join();

    EXPECT_EQ(platform_.addressBook.storedUids(), (Uids{"1", "2", "3", "5"}));
}

TEST_F(DeletionTest, NeverOverlapsAnother)
{
    std::vector<std::string> steps;
    platform_.addressBook.onRemove = [&] { steps.emplace_back("remove"); };
    platform_.addressBook.onSave = [&] { steps.emplace_back("save"); };

    std::thread first([&] { engine_.deleteContacts({"2"}); });
    std::thread second([&] { engine_.deleteContacts({"4"}); });
    first.join();
    second.join();

    EXPECT_EQ(steps, (Lines{"remove", "save", "remove", "save"}));
    EXPECT_EQ(platform_.addressBook.storedUids(), (Uids{"1", "3", "5"}));
}

TEST_F(DeletionTest, HasLeftItsMonitorWhenItReportsTheEnd)
{
    bool entered = false;
    NotificationCenter::defaultCenter().addObserver(this, kMsgFinished, [&](const Notification&) {
        NotificationCenter::defaultCenter().removeObserver(this, kMsgFinished);
        std::thread([&] { engine_.deleteContacts({"4"}); }).join();
        entered = true;
    });

    engine_.deleteContacts({"2"});

    EXPECT_TRUE(entered);
    EXPECT_EQ(platform_.addressBook.storedUids(), (Uids{"1", "3", "5"}));
}

TEST_F(DeletionTest, TakesTensOfThousandsOfPeopleInOneSweep)
{
    std::vector<FakePerson> people;
    Uids checked;
    for (int i = 0; i < 100000; ++i) {
        people.push_back(person(std::to_string(i), "Ann"));
        if (i % 2 == 1) {
            checked.push_back(std::to_string(i));
        }
    }
    loadAndFind(std::move(people));
    // The fake's own removal is linear; that is not what is tried here.
    platform_.addressBook.onSave = [] { throw PlatformError("far enough"); };

    EXPECT_THROW(engine_.deleteContacts(checked), PlatformError);

    EXPECT_EQ(engine_.contacts().size(), 50000U);
    EXPECT_EQ(engine_.duplicates().size(), 50000U);
}

}  // namespace
}  // namespace dunmora::test
