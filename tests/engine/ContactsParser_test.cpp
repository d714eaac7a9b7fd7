#include "engine/ContactsParser.h"

#include "base/NotificationCenter.h"
#include "base/Settings.h"
#include "engine/MatchKey.h"
#include "platform/PlatformError.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/NotificationRecorder.h"
#include "tests/fakes/People.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <thread>
#include <utility>

namespace dunmora::test {
namespace {

using Uids = std::vector<std::string>;
using Lines = std::vector<std::string>;

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

// Loading.

TEST_F(ContactsParserTest, IsOneEngineOnEveryThread)
{
    ContactsParser* fromWorker = nullptr;
    std::thread([&] { fromWorker = &ContactsParser::parser(); }).join();

    EXPECT_EQ(fromWorker, &ContactsParser::parser());
}

TEST_F(ContactsParserTest, StartsWithoutPeopleAndRows)
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
    bookHolds({named("z", "Zoe"), named("a", "Ann"), named("m", "Moe")});

    engine_.load();

    EXPECT_EQ(contactUids(), (Uids{"z", "a", "m"}));
}

TEST_F(ContactsParserTest, LetsALaterPersonOfTheSameUidReplaceTheEarlier)
{
    auto earlier = withMobile(named("same", "Ann"));
    auto later = named("same", "Ben");
    later.modified = std::nullopt;
    bookHolds({earlier, later});

    engine_.load();

    EXPECT_EQ(engine_.contacts().size(), 1U);
    const auto& record = *engine_.contacts().find("same");
    EXPECT_EQ(record.text("fname"), "Ben");
    EXPECT_EQ(record.text("mobile"), "");
    EXPECT_EQ(record.objectForKey("modified"), std::nullopt);
}

TEST_F(ContactsParserTest, ReadsTheBookAgainInEveryLoad)
{
    bookHolds({named("1", "Ann")});

    engine_.load();
    engine_.load();

    EXPECT_EQ(platform_.addressBook.readings(), 2U);
    EXPECT_EQ(platform_.addressBook.listings(), 0U);
}

TEST_F(ContactsParserTest, ReportsALoadStepByStep)
{
    bookHolds({named("1", "Ann"), named("2", "Ben")});
    const NotificationRecorder recorder;

    engine_.load();

    EXPECT_EQ(recorder.lines(), (Lines{"msgShowMessage Loading Contacts...", "msgProgress 0/2",
                                       "msgProgress 1/2", "msgFinished loading"}));
    EXPECT_TRUE(std::all_of(recorder.senders().begin(), recorder.senders().end(),
                            [&](const void* sender) { return sender == &engine_; }));
}

TEST_F(ContactsParserTest, PostsProgressBeforeThePersonIsHandled)
{
    bookHolds({named("1", "Ann"), named("2", "Ben")});
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
    loadAndFind({named("1", "Ann"), named("2", "Ann")});

    engine_.load();

    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "2"}));
    EXPECT_EQ(checkedUids(), Uids{});
    engine_.markDeletedContacts();
    EXPECT_EQ(checkedUids(), (Uids{"1", "2"}));
}

TEST_F(ContactsParserTest, ResetForgetsRowsAndGroupsButKeepsThePeople)
{
    loadAndFind({named("1", "Ann"), named("2", "Ann")});
    engine_.load();

    engine_.reset();

    EXPECT_TRUE(engine_.duplicates().empty());
    EXPECT_EQ(contactUids(), (Uids{"1", "2"}));
    engine_.markDeletedContacts();
    EXPECT_EQ(checkedUids(), Uids{});
}

TEST_F(ContactsParserTest, LeavesNobodyAndNoRowsWhenTheBookCannotBeRead)
{
    loadAndFind({named("1", "Ann"), named("2", "Ann")});
    platform_.addressBook.onRead = [] { throw PlatformError("The book is gone."); };
    const NotificationRecorder recorder;

    EXPECT_THROW(engine_.load(), PlatformError);

    EXPECT_TRUE(engine_.contacts().empty());
    EXPECT_TRUE(engine_.duplicates().empty());
    EXPECT_EQ(recorder.lines(), Lines{"msgShowMessage Loading Contacts..."});
}

TEST_F(ContactsParserTest, NeedsAnOpenAddressBook)
{
    loadAndFind({person("1", "Ann"), person("2", "Ann")});
    platform_.platform.addressBook = nullptr;

    EXPECT_THROW(engine_.deleteContacts({"1"}), PlatformError);
    EXPECT_THROW(engine_.load(), PlatformError);

    EXPECT_TRUE(engine_.contacts().empty());
    EXPECT_TRUE(engine_.duplicates().empty());
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

TEST_F(ContactsParserTest, LockAndUnlockExcludeNobody)
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

// Deleting.

class DeletionTest : public ContactsParserTest {
protected:
    DeletionTest()
    {
        loadAndFind({withMobile(named("1", "Ann")), named("2", "Ann"), named("3", "Ben"),
                     named("4", "Ben"), named("5", "Cid")});
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

TEST_F(DeletionTest, KeepsInItsCollectionsAPersonWhoIsNoLongerInTheBook)
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

TEST_F(DeletionTest, LeavesTheGroupsListingThePeopleItRemoved)
{
    const auto groups = engine_.contactGroups().size();

    engine_.deleteContacts({"2"});

    EXPECT_EQ(engine_.contactGroups().size(), groups);
    EXPECT_EQ(*engine_.contactGroups().find("Ann-Lee-"), (Uids{"1", "2"}));
}

TEST_F(DeletionTest, ForgetsPeopleBeforeTheBookIsChanged)
{
    Uids contacts;
    Uids rows;
    platform_.addressBook.onRemove = [&] {
        contacts = contactUids();
        rows = engine_.duplicates();
    };

    engine_.deleteContacts({"2"});

    EXPECT_EQ(contacts, (Uids{"1", "3", "4", "5"}));
    EXPECT_EQ(rows, (Uids{"1", "3", "4"}));
}

TEST_F(DeletionTest, ListsTheBookWithoutReadingItAgain)
{
    const auto readings = platform_.addressBook.readings();

    engine_.deleteContacts({"2"});

    EXPECT_EQ(platform_.addressBook.readings(), readings);
    EXPECT_EQ(platform_.addressBook.listings(), 1U);
}

TEST_F(DeletionTest, ThrowsWithoutMsgFinishedWhenARemovalFails)
{
    platform_.addressBook.onRemove = [] { throw PlatformError("No."); };
    const NotificationRecorder recorder;

    EXPECT_THROW(engine_.deleteContacts({"2"}), PlatformError);

    EXPECT_EQ(recorder.count("msgFinished"), 0U);
    EXPECT_EQ(platform_.addressBook.storedUids().size(), 5U);
}

TEST_F(DeletionTest, ThrowsAndHasForgottenThePeopleWhenTheSaveFails)
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

/// Returns whether a thread of this process sleeps, as it does while it waits for a lock.
bool isAsleep(pid_t thread)
{
    std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
    std::string stat;
    std::getline(file, stat);
    const auto nameEnd = stat.rfind(") ");
    return nameEnd != std::string::npos && stat.compare(nameEnd + 2, 1, "S") == 0;
}

TEST_F(DeletionTest, StartsAfterAnotherHasEnded)
{
    std::atomic<pid_t> secondThread = 0;
    std::atomic<int> messages = 0;
    int messagesInFirst = 0;
    std::thread second;
    NotificationCenter::defaultCenter().addObserver(this, kMsgShowMessage,
                                                    [&](const Notification&) { ++messages; });
    platform_.addressBook.onRemove = [&] {
        if (second.joinable()) {
            return;
        }
        second = std::thread([&] {
            secondThread = gettid();
            engine_.deleteContacts({"4"});
        });
        while (messages < 2 && (secondThread == 0 || !isAsleep(secondThread))) {
            std::this_thread::yield();
        }
        messagesInFirst = messages;
    };

    engine_.deleteContacts({"2"});
    second.join();
    NotificationCenter::defaultCenter().removeObserver(this, kMsgShowMessage);

    EXPECT_EQ(messagesInFirst, 1);
    EXPECT_EQ(messages, 2);
    EXPECT_EQ(platform_.addressBook.storedUids(), (Uids{"1", "3", "5"}));
}

TEST_F(DeletionTest, MayBeStartedByAHandlerOfAnother)
{
    NotificationCenter::defaultCenter().addObserver(
        this, kMsgShowMessage, [&](const Notification&) {
            NotificationCenter::defaultCenter().removeObserver(this, kMsgShowMessage);
            engine_.deleteContacts({"4"});
        });

    engine_.deleteContacts({"2"});

    EXPECT_EQ(platform_.addressBook.storedUids(), (Uids{"1", "3", "5"}));
}

TEST_F(DeletionTest, ReleasesItsMonitorBeforeItReportsTheEnd)
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

TEST_F(DeletionTest, RemovesTensOfThousandsOfPeopleInOneSweep)
{
    std::vector<FakePerson> people;
    Uids checked;
    for (int i = 0; i < 100000; ++i) {
        people.push_back(named(std::to_string(i), "Ann"));
        if (i % 2 == 1) {
            checked.push_back(std::to_string(i));
        }
    }
    loadAndFind(std::move(people));
    // The fake removes in linear time, which is not what is measured here.
    platform_.addressBook.onSave = [] { throw PlatformError("far enough"); };

    EXPECT_THROW(engine_.deleteContacts(checked), PlatformError);

    EXPECT_EQ(engine_.contacts().size(), 50000U);
    EXPECT_EQ(engine_.duplicates().size(), 50000U);
}

}  // namespace
}  // namespace dunmora::test
