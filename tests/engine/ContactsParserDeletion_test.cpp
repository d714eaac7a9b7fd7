#include "base/NotificationCenter.h"
#include "platform/PlatformError.h"
#include "tests/engine/ContactsParserTest.h"
#include "tests/fakes/NotificationRecorder.h"

#include <unistd.h>

#include <atomic>
#include <fstream>
#include <thread>

namespace dunmora::test {
namespace {

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

TEST_F(DeletionTest, FindsTheRecordsOfTheRowsThatAreLeft)
{
    engine_.deleteContacts({"1", "4"});

    EXPECT_EQ(engine_.recordInRow(0), engine_.contacts().find("2"));
    EXPECT_EQ(engine_.recordInRow(1), engine_.contacts().find("3"));
    EXPECT_EQ(engine_.recordInRow(2), nullptr);
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

TEST_F(DeletionTest, RemovesTheRowOfAPersonWhomTheEngineNoLongerKnows)
{
    engine_.contacts().erase("2");

    engine_.deleteContacts({"2"});

    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "3", "4"}));
    EXPECT_EQ(platform_.addressBook.storedUids(), (Uids{"1", "3", "4", "5"}));
}

TEST_F(DeletionTest, RemovesThePeopleNamedAfterALoadInAnotherOrder)
{
    bookHolds({named("5", "Cid"), named("4", "Ben"), named("3", "Ben"), named("2", "Ann"),
               named("1", "Ann")});
    engine_.load();

    engine_.deleteContacts({"2"});

    EXPECT_EQ(platform_.addressBook.storedUids(), (Uids{"5", "4", "3", "1"}));
    EXPECT_EQ(contactUids(), (Uids{"5", "4", "3", "1"}));
    EXPECT_EQ(engine_.duplicates(), (Uids{"1", "3", "4"}));
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
    EXPECT_EQ(uidsInGroup("Ann-Lee-"), (Uids{"1", "2"}));
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
