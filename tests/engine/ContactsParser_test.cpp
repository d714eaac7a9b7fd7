#include "engine/ContactsParser.h"

#include "base/NotificationCenter.h"
#include "platform/PlatformError.h"
#include "tests/engine/ContactsParserTest.h"
#include "tests/fakes/NotificationRecorder.h"

#include <algorithm>
#include <thread>

namespace dunmora::test {
namespace {

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

TEST_F(ContactsParserTest, LeavesNobodyAndNoRowsWhenALoadStopsBetweenTwoPeople)
{
    loadAndFind({named("1", "Ann"), named("2", "Ann")});
    std::size_t loadedAtTheStop = 0;
    NotificationCenter::defaultCenter().addObserver(this, kMsgProgress, [&](const Notification&) {
        loadedAtTheStop = engine_.contacts().size();
        if (loadedAtTheStop == 1) {
            throw PlatformError("Stop.");
        }
    });

    EXPECT_THROW(engine_.load(), PlatformError);
    NotificationCenter::defaultCenter().removeObserver(this, kMsgProgress);

    EXPECT_EQ(loadedAtTheStop, 1U);
    EXPECT_TRUE(engine_.contacts().empty());
    EXPECT_TRUE(engine_.duplicates().empty());
    EXPECT_EQ(engine_.contactGroups().size(), 0U);
    EXPECT_EQ(engine_.recordInRow(0), nullptr);
    engine_.markDeletedContacts();
    EXPECT_EQ(checkedUids(), Uids{});
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

TEST_F(ContactsParserTest, LockAndUnlockExcludeNobody)
{
    engine_.lock();
    engine_.lock();
    std::thread([&] { engine_.lock(); }).join();
    engine_.unlock();

    SUCCEED() << "none of the three waited";
}

}  // namespace
}  // namespace dunmora::test
