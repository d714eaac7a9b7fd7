#include "adapters/eds/ContactService.h"
#include "adapters/eds/EdsBooks.h"
#include "adapters/eds/EdsModule.h"
#include "platform/AddressBook.h"
#include "tests/adapters/eds/CardDavServer.h"
#include "tests/adapters/eds/Deleting.h"
#include "tests/adapters/eds/OtherClient.h"
#include "tests/adapters/eds/PrivateDesktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace dunmora::test {
namespace {

using Lines = std::vector<std::string>;
using Cards = std::map<std::string, std::string>;
using Outcome = RemovalResult::Outcome;
using AdditionOutcome = AdditionResult::Outcome;

std::string cardOf(const std::string& uid, const std::string& properties = "")
{
    return "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:" + uid + "\r\nN:Lee;" + uid + ";;;\r\n" +
           properties + "END:VCARD\r\n";
}

/// Tests with a desktop book on a server, new for each test.
class EdsServerTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!PrivateDesktop::isPossible()) {
            GTEST_SKIP() << "Evolution Data Server is not installed.";
        }
        PrivateDesktop::ofThisProcess();
        uid_ = testing::UnitTest::GetInstance()->current_test_info()->name();
        for (const auto* uid : {"ann", "ben", "cid"}) {
            server_.put(uid, cardOf(uid, "NOTE:one\\, two\r\nX-OWN;X-P=\"a;b\":kept\r\n"));
        }
    }

    void TearDown() override
    {
        book_.reset();
        if (PrivateDesktop::isPossible()) {
            others_.removeBook(uid_);
        }
    }

    /// Adds the server's book to the desktop and closes it, as if it was used some time ago.
    void isKnownToTheDesktop()
    {
        others_.makeServerBook(uid_, "Work", server_.port());
        server_.awaitListing();
        others_.close(uid_);
    }

    static PrivateDesktop& desktop() { return PrivateDesktop::ofThisProcess(); }

    AddressBook& book()
    {
        if (!book_) {
            book_ = openEdsBook(std::string(kEdsName) + uid_).addressBook;
        }
        return *book_;
    }

    /// Returns the service after it has read the book.
    std::unique_ptr<ContactService> openService()
    {
        auto service = loadContactService();
        service->books();
        EXPECT_EQ(service->read({uid_}).at(0).failure, "");
        return service;
    }

    void ask(const Lines& uids) { askFor(book(), uids); }

    /// The uids that another program sees, sorted.
    Lines seenByOthers()
    {
        auto uids = others_.uids(uid_);
        std::sort(uids.begin(), uids.end());
        return uids;
    }

    /// Waits until the service has sent the server everything that it had queued.
    void settle()
    {
        others_.refresh(uid_);
        server_.awaitListing();
    }

    std::string uid_;
    CardDavServer server_;
    OtherClient others_;

private:
    std::shared_ptr<AddressBook> book_;
};

TEST_F(EdsServerTest, DeletesOnTheServerAndLeavesTheOthersUnchangedByteForByte)
{
    isKnownToTheDesktop();
    auto expected = server_.cards();
    expected.erase("ann");
    expected.erase("cid");

    book().readPeople();
    ask({"ann", "cid"});
    book().save();

    EXPECT_EQ(server_.cards(), expected);
    EXPECT_EQ(seenByOthers(), Lines{"ben"});
}

TEST_F(EdsServerTest, LeavesPeopleAloneWhoChangedOnTheServer)
{
    isKnownToTheDesktop();
    book().readPeople();
    ask({"ann", "ben"});
    const auto edited = cardOf("ann", "NOTE:newer\r\n");
    server_.put("ann", edited);

    EXPECT_EQ(failureOf([&] { book().save(); }),
              "Not everybody was deleted. Of 2 people, 1 was deleted, 1 has changed and was not "
              "deleted. Reload the address book before you delete more.");
    auto expected = server_.cards();
    EXPECT_EQ(expected.size(), 2U);
    EXPECT_EQ(expected["ann"], edited);
}

TEST_F(EdsServerTest, ReportsThatSomebodyChangedOnTheServer)
{
    isKnownToTheDesktop();
    const auto service = openService();
    server_.put("ann", cardOf("ann", "NOTE:newer\r\n"));

    EXPECT_EQ(service->remove(uid_, {"ann"}).outcome, Outcome::Changed);
    EXPECT_EQ(server_.cards().size(), 3U);
}

TEST_F(EdsServerTest, NamesTheBookWhileItsServerIsAwayAndRemovesNobodyLater)
{
    isKnownToTheDesktop();
    server_.goAway();

    EXPECT_EQ(failureOf([&] { book().readPeople(); }),
              "“Work” could not be read: Its server cannot be reached.");
    const auto all = openEdsBook("eds:").addressBook;
    EXPECT_TRUE(all->readPeople().empty());
    EXPECT_EQ(all->notes().remarks,
              Lines{"“Work” could not be read: Its server cannot be reached."});

    server_.comeBack();
    EXPECT_EQ(book().readPeople().size(), 3U);
    settle();
    EXPECT_EQ(server_.removals(), Lines{});
}

TEST_F(EdsServerTest, WaitsUntilTheServiceHasTriedTheServerAgain)
{
    isKnownToTheDesktop();
    server_.goAway();
    others_.refresh(uid_);
    OtherClient::claimServer(uid_);

    EXPECT_EQ(failureOf([&] { book().readPeople(); }),
              "“Work” could not be read: Its server cannot be reached.");
}

TEST_F(EdsServerTest, RefusesToRemoveFromTheDesktopsCopyAlone)
{
    isKnownToTheDesktop();
    const auto service = openService();
    desktop().signalFactories(SIGKILL);
    server_.goAway();

    const auto found = service->find(uid_, {"ann"});
    const auto result = service->remove(uid_, {"ann"});

    EXPECT_EQ(found.failure, "Its server cannot be reached.");
    EXPECT_FALSE(found.hasTimedOut);
    EXPECT_EQ(result.outcome, Outcome::Refused);
    EXPECT_EQ(result.reason, "Its server cannot be reached.");
    server_.comeBack();
    settle();
    EXPECT_EQ(server_.removals(), Lines{});
    EXPECT_EQ(server_.cards().size(), 3U);
}

TEST_F(EdsServerTest, RemovesNobodyLaterWhenTheServerGoesAwayBetweenListingAndRemoval)
{
    isKnownToTheDesktop();
    book().readPeople();
    ask({"ann", "ben"});
    server_.goAway();

    const auto failure = failureOf([&] { book().save(); });

    EXPECT_TRUE(
        failure.starts_with("Not everybody was deleted. Of 2 people, 2 are still there. “Work”: "))
        << failure;
    server_.comeBack();
    settle();
    EXPECT_EQ(server_.removals(), Lines{});
    EXPECT_EQ(server_.cards().size(), 3U);
}

TEST_F(EdsServerTest, AsksForNoRemovalWhileTheServiceHasLostTheServer)
{
    isKnownToTheDesktop();
    const auto service = openService();
    server_.lockOut();
    others_.refresh(uid_);
    OtherClient::awaitLoss(uid_);

    const auto result = service->remove(uid_, {"ann"});
    const auto found = service->find(uid_, {"ann"});

    EXPECT_EQ(result.outcome, Outcome::Refused);
    EXPECT_EQ(result.reason, "Its server cannot be reached.");
    // The text varies, because the service itself may wait for a password.
    EXPECT_NE(found.failure, "");
    EXPECT_EQ(server_.removals(), Lines{});
}

// The service reports success both for a removal and for one that it has only queued.
TEST_F(EdsServerTest, DoesNotCountQueuedRemovalsAsDone)
{
    isKnownToTheDesktop();
    const auto service = openService();
    server_.holdChanges();
    RemovalResult result;
    std::thread removal([&] { result = service->remove(uid_, {"ann"}); });

    server_.awaitHeldChange();
    OtherClient::loseServer(uid_);
    server_.letGo();
    removal.join();

    EXPECT_EQ(result.outcome, Outcome::NoReply);
    EXPECT_EQ(result.reason,
              "Its server can no longer be reached. The people may still be deleted there later.");
}

TEST_F(EdsServerTest, ReportsARemovalAsUnknownWhenTheServerDisconnects)
{
    isKnownToTheDesktop();
    const auto service = openService();
    server_.holdChanges();
    RemovalResult result;
    std::thread removal([&] { result = service->remove(uid_, {"ann"}); });

    server_.awaitHeldChange();
    server_.goAway();
    removal.join();

    EXPECT_EQ(result.outcome, Outcome::NoReply) << result.reason;
}

TEST_F(EdsServerTest, ReportsARemovalAsUnknownWhenTheReplyIsLost)
{
    isKnownToTheDesktop();
    const auto service = openService();
    server_.loseRepliesToChanges();

    const auto result = service->remove(uid_, {"ann"});

    EXPECT_EQ(result.outcome, Outcome::NoReply) << result.reason;
    EXPECT_EQ(service->find(uid_, {"ann"}).failure,
              "What its server has done is unknown until the address book is reloaded.");
    service->books();
    EXPECT_EQ(service->read({uid_}).at(0).failure, "");
}

// The desktop's copy still has the person.
TEST_F(EdsServerTest, CountsUnknownRemovals)
{
    isKnownToTheDesktop();
    book().readPeople();
    ask({"ann"});
    server_.loseRepliesToChanges();

    const auto failure = failureOf([&] { book().save(); });

    EXPECT_TRUE(failure.starts_with("Not everybody was deleted. Of 1 person, 1 may or may not have "
                                    "been deleted. "))
        << failure;
    EXPECT_FALSE(server_.cards().contains("ann"));
}

TEST_F(EdsServerTest, ReportsRefusedRemovals)
{
    constexpr int kUnavailable = 503;
    isKnownToTheDesktop();
    server_.refuseChanges(kUnavailable, 1);
    book().readPeople();
    ask({"ann", "ben", "cid"});

    const auto failure = failureOf([&] { book().save(); });

    EXPECT_TRUE(failure.starts_with(
        "Not everybody was deleted. Of 3 people, 1 was deleted, 2 are still there. "
        "“Work”: "))
        << failure;
    EXPECT_EQ(server_.cards().size(), 2U);
}

// The service mistakes the refusal for a wrong password and waits for another one.
TEST_F(EdsServerTest, DoesNotCountForbiddenRemovalsAsDone)
{
    constexpr int kForbidden = 403;
    isKnownToTheDesktop();
    const auto service = openService();
    server_.refuseChanges(kForbidden);

    EXPECT_EQ(service->remove(uid_, {"ann"}).outcome, Outcome::NoReply);
    EXPECT_EQ(server_.cards().size(), 3U);
}

TEST_F(EdsServerTest, ReportsAServerThatDoesNotReplyInTime)
{
    isKnownToTheDesktop();
    const auto service = openService();
    server_.holdChanges();

    const auto begin = std::chrono::steady_clock::now();
    const auto result = service->remove(uid_, {"ann"});

    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    EXPECT_EQ(result.outcome, Outcome::NoReply);
    EXPECT_EQ(result.reason, "The service did not reply in time.");
    server_.letGo();
}

TEST_F(EdsServerTest, AddsOnTheServer)
{
    isKnownToTheDesktop();
    const auto service = openService();

    const auto result = service->add(uid_, {cardOf("dan", "X-OWN;X-P=\"a;b\":kept\r\n")});

    EXPECT_EQ(result.outcome, AdditionOutcome::Added) << result.reason;
    ASSERT_TRUE(server_.cards().contains("dan"));
    EXPECT_NE(server_.cards().at("dan").find("X-OWN;X-P=\"a;b\":kept\r\n"), std::string::npos);
    EXPECT_EQ(seenByOthers(), (Lines{"ann", "ben", "cid", "dan"}));
}

TEST_F(EdsServerTest, ReplacesNobodyOnTheServer)
{
    isKnownToTheDesktop();
    const auto service = openService();
    // The desktop does not know this one yet.
    const auto newer = cardOf("dan", "NOTE:newer\r\n");
    server_.put("dan", newer);
    const auto before = server_.cards();

    EXPECT_EQ(service->add(uid_, {cardOf("ann", "NOTE:other\r\n")}).outcome,
              AdditionOutcome::Exists);
    EXPECT_NE(service->add(uid_, {cardOf("dan")}).outcome, AdditionOutcome::Added);
    EXPECT_EQ(server_.cards(), before);
}

TEST_F(EdsServerTest, AddsNobodyToTheDesktopsCopyAlone)
{
    isKnownToTheDesktop();
    const auto service = openService();
    desktop().signalFactories(SIGKILL);
    server_.goAway();
    service->find(uid_, {"ann"});

    const auto result = service->add(uid_, {cardOf("dan")});

    EXPECT_EQ(result.outcome, AdditionOutcome::Refused);
    EXPECT_EQ(result.reason, "Its server cannot be reached.");
    server_.comeBack();
    settle();
    EXPECT_EQ(server_.additions(), Lines{});
}

TEST_F(EdsServerTest, ReportsAnAdditionAsUnknownWhenTheReplyIsLost)
{
    isKnownToTheDesktop();
    const auto service = openService();
    server_.loseRepliesToChanges();

    const auto result = service->add(uid_, {cardOf("dan")});

    EXPECT_EQ(result.outcome, AdditionOutcome::NoReply) << result.reason;
    EXPECT_EQ(service->find(uid_, {"dan"}).failure,
              "What its server has done is unknown until the address book is reloaded.");
}

TEST_F(EdsServerTest, DoesNotCountQueuedAdditionsAsDone)
{
    isKnownToTheDesktop();
    const auto service = openService();
    constexpr int kAttempts = 20;
    AdditionResult result;
    // The service is connected again for a moment, and the program may ask just then.
    for (int i = 0; i < kAttempts && result.outcome == AdditionOutcome::Added; ++i) {
        OtherClient::claimServer(uid_);
        const auto name = "dan" + std::to_string(i);
        server_.holdChanges();
        std::thread addition([&] { result = service->add(uid_, {cardOf(name)}); });

        server_.awaitHeldChange();
        std::atomic<bool> isDone = false;
        std::thread loss([&] { OtherClient::keepLosingServer(uid_, isDone); });
        OtherClient::awaitLoss(uid_);
        server_.letGo();
        addition.join();
        isDone = true;
        loss.join();
        EXPECT_TRUE(server_.cards().contains(name));
    }

    EXPECT_EQ(result.outcome, AdditionOutcome::NoReply);
    EXPECT_EQ(result.reason,
              "Its server can no longer be reached. The people may still be added there later.");
}

TEST_F(EdsServerTest, ReportsRefusedAdditions)
{
    constexpr int kUnavailable = 503;
    isKnownToTheDesktop();
    const auto service = openService();
    server_.refuseChanges(kUnavailable);

    const auto result = service->add(uid_, {cardOf("dan")});

    EXPECT_EQ(result.outcome, AdditionOutcome::Refused);
    EXPECT_NE(result.reason, "");
    EXPECT_FALSE(server_.cards().contains("dan"));
}

TEST_F(EdsServerTest, OpensAReadOnlyBookWithoutDelay)
{
    server_.forbidChanges();
    isKnownToTheDesktop();
    const auto service = loadContactService();
    service->books();

    const auto begin = std::chrono::steady_clock::now();
    const auto content = service->read({uid_}).at(0);

    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    EXPECT_EQ(content.failure, "");
    EXPECT_FALSE(content.isWritable);
    EXPECT_EQ(content.people.size(), 3U);
}

}  // namespace
}  // namespace dunmora::test
