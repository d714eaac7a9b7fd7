#include "adapters/eds/ContactService.h"
#include "adapters/eds/EdsAddressBook.h"
#include "adapters/eds/EdsBooks.h"
#include "adapters/eds/EdsModule.h"
#include "platform/AddressBook.h"
#include "platform/CardRestorer.h"
#include "platform/CardSource.h"
#include "tests/adapters/eds/Deleting.h"
#include "tests/adapters/eds/OtherClient.h"
#include "tests/adapters/eds/PrivateDesktop.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <map>
#include <memory>
#include <regex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace dunmora::test {
namespace {

using Cards = std::map<std::string, std::string>;
using Lines = std::vector<std::string>;
using std::chrono::steady_clock;

std::string cardOf(const std::string& uid, const std::string& properties = "")
{
    return "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:" + uid + "\r\nN:Lee;" + uid + ";;;\r\n" +
           properties + "END:VCARD\r\n";
}

/// The counts in the error of a failed deletion.
struct Counts {
    std::size_t removed = 0;
    std::size_t gone = 0;
    std::size_t changed = 0;
    std::size_t left = 0;
    std::size_t unknown = 0;
    std::size_t untried = 0;
};

Counts countsIn(const std::string& failure)
{
    const auto count = [&](const std::string& what) {
        std::smatch match;
        return std::regex_search(failure, match, std::regex(what)) ? std::stoul(match[1]) : 0;
    };
    return {count("([0-9]+) (was|were) deleted[,.]"), count("([0-9]+) (was|were) already gone"),
            count("([0-9]+) (has|have) changed"),     count("([0-9]+) (is|are) still there"),
            count("([0-9]+) may or may not"),         count("([0-9]+) (was|were) not tried")};
}

/// The real service, with an incident right before and right after each change.
class ServiceWithIncident final : public ContactService {
public:
    using Incident = std::function<void()>;

    ServiceWithIncident(Incident before, Incident after)
        : before_(std::move(before)), after_(std::move(after))
    {
    }

    bool isAvailable() override { return service_->isAvailable(); }
    std::vector<ServiceBook> books() override { return service_->books(); }
    std::vector<BookContent> read(const Lines& books) override { return service_->read(books); }
    BookContent find(const std::string& book, const Lines& people) override
    {
        return service_->find(book, people);
    }
    RemovalResult remove(const std::string& book, const Lines& people) override
    {
        before_();
        auto answer = service_->remove(book, people);
        after_();
        return answer;
    }
    AdditionResult add(const std::string& book, const Lines& cards) override
    {
        before_();
        auto answer = service_->add(book, cards);
        after_();
        return answer;
    }

private:
    std::unique_ptr<ContactService> service_ = loadContactService();
    Incident before_;
    Incident after_;
};

/// Tests on a private desktop whose address books another program uses, too. Each test has its own
/// book.
class EdsServiceTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!PrivateDesktop::isPossible()) {
            GTEST_SKIP() << "Evolution Data Server is not installed.";
        }
        PrivateDesktop::ofThisProcess();
        uid_ = testing::UnitTest::GetInstance()->current_test_info()->name();
        others_.makeBook(uid_, "Friends");
    }

    static PrivateDesktop& desktop() { return PrivateDesktop::ofThisProcess(); }

    void holds(const Lines& uids)
    {
        Lines cards;
        for (const auto& uid : uids) {
            cards.push_back(cardOf(uid));
        }
        others_.add(uid_, cards);
    }

    OpenedBook& opened()
    {
        if (!book_.addressBook) {
            book_ = openEdsBook(std::string(kEdsName) + uid_);
        }
        return book_;
    }

    AddressBook& book() { return *opened().addressBook; }

    void ask(const Lines& uids) { askFor(book(), uids); }

    static double secondsOf(const std::function<void()>& action)
    {
        const auto begin = steady_clock::now();
        action();
        return std::chrono::duration<double>(steady_clock::now() - begin).count();
    }

    std::string uid_;
    OtherClient others_;

private:
    OpenedBook book_;
};

TEST_F(EdsServiceTest, ReadsPeopleAndOmitsLists)
{
    others_.add(uid_, {cardOf("ann", "NICKNAME:Annie\r\nitem1.TEL:555-0100\r\n"
                                     "item1.X-ABLabel:Boat\r\nTEL;TYPE=CELL:555-0101\r\n"),
                       "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:family\r\nFN:Family\r\n"
                       "X-EVOLUTION-LIST:TRUE\r\nEMAIL:ann@example.com\r\nEND:VCARD\r\n"});

    const auto people = book().readPeople();

    ASSERT_EQ(uidsOf(people), Lines{"ann"});
    EXPECT_EQ(people[0].firstName, "ann");
    EXPECT_EQ(people[0].lastName, "Lee");
    EXPECT_EQ(people[0].nickname, "Annie");
    ASSERT_EQ(people[0].phones->size(), 2U);
    EXPECT_EQ((*people[0].phones)[0].label, "Boat");
    EXPECT_EQ((*people[0].phones)[0].value, "555-0100");
    EXPECT_EQ((*people[0].phones)[1].label, "_$!<Mobile>!$_");
    EXPECT_TRUE(book().notes().remarks.empty());
}

TEST_F(EdsServiceTest, LeavesMissingPropertiesEmptyExceptTheModificationDate)
{
    others_.add(uid_, {"BEGIN:VCARD\r\nVERSION:3.0\r\nUID:bare\r\nEND:VCARD\r\n"});

    const auto people = book().readPeople();

    ASSERT_EQ(uidsOf(people), Lines{"bare"});
    EXPECT_EQ(people[0].firstName, std::nullopt);
    EXPECT_EQ(people[0].lastName, std::nullopt);
    EXPECT_EQ(people[0].nickname, std::nullopt);
    EXPECT_FALSE(people[0].phones.has_value());
}

TEST_F(EdsServiceTest, ReadsAllBooksTogetherAndDeletesFromEach)
{
    const auto second = uid_ + "2";
    others_.makeBook(second, "Others");
    holds({"ann", "ben"});
    others_.add(second, {cardOf("ann"), cardOf("cid")});
    const auto all = openEdsBook("eds:").addressBook;

    std::vector<const Person*> checked;
    for (const auto& person : all->readPeople()) {
        if (person.uid == uid_ + "/ann" || person.uid == second + "/ann") {
            checked.push_back(&person);
        }
    }
    ASSERT_EQ(checked.size(), 2U);
    for (const auto* person : checked) {
        all->removeRecord(*person);
    }
    all->save();

    EXPECT_EQ(others_.uids(uid_), Lines{"ben"});
    EXPECT_EQ(others_.uids(second), Lines{"cid"});
}

TEST_F(EdsServiceTest, ListsTheDesktopsBooks)
{
    holds({"ann", "ben"});

    const auto books = listEdsBooks();

    const auto own = std::find_if(books.begin(), books.end(),
                                  [&](const auto& each) { return each.uid == uid_; });
    ASSERT_NE(own, books.end());
    EXPECT_EQ(own->name, "Friends");
    EXPECT_EQ(own->kind, "local");
    EXPECT_EQ(own->isWritable, true);
    EXPECT_EQ(own->people, 2U);
    EXPECT_EQ(edsBooksProblem(), "");
}

TEST_F(EdsServiceTest, NamesABookThatCannotBeReachedAndReadsTheOthers)
{
    const auto broken = uid_ + "2";
    others_.makeBook(broken, "Nowhere", "nosuchkind");
    holds({"ann"});
    const auto all = openEdsBook("eds:").addressBook;

    const auto uids = uidsOf(all->readPeople());

    EXPECT_NE(std::find(uids.begin(), uids.end(), uid_ + "/ann"), uids.end());
    const auto remarks = all->notes().remarks;
    ASSERT_EQ(remarks.size(), 1U);
    EXPECT_TRUE(remarks[0].starts_with("“Nowhere” could not be read: ")) << remarks[0];
}

TEST_F(EdsServiceTest, LeavesEveryoneElseUnchangedByteForByte)
{
    Lines uids;
    for (int i = 0; i < 500; ++i) {
        uids.push_back("p" + std::to_string(i));
    }
    Lines cards;
    for (const auto& uid : uids) {
        cards.push_back(cardOf(uid, "NOTE:one\\, two\\nthree\r\nX-OWN;X-P=\"a;b\":kept\r\n"
                                    "item1.TEL:555-0100\r\nitem1.X-ABLabel:_$!<Home>!$_\r\n"));
    }
    others_.add(uid_, cards);
    auto expected = others_.cards(uid_);
    book().readPeople();

    Lines checked;
    for (std::size_t i = 0; i < uids.size(); i += 2) {
        checked.push_back(uids[i]);
        expected.erase(uids[i]);
    }
    ask(checked);
    book().save();

    EXPECT_EQ(others_.cards(uid_), expected);
}

TEST_F(EdsServiceTest, LeavesPeopleAloneWhomAnotherProgramChangedAndIgnoresThoseItDeleted)
{
    holds({"a", "b", "c", "d"});
    book().readPeople();
    others_.remove(uid_, {"a"});
    others_.edit(uid_, cardOf("b", "NICKNAME:Bee\r\n"));
    const auto edited = others_.cards(uid_).at("b");
    ask({"a", "b", "c"});

    const auto failure = failureOf([&] { book().save(); });

    // “a” was gone when the deletion began and was not requested.
    EXPECT_EQ(failure, "Not everybody was deleted. Of 2 people, 1 was deleted, 1 has changed and "
                       "was not deleted. Reload the address book before you delete more.");
    EXPECT_EQ(others_.uids(uid_).size(), 2U);
    EXPECT_EQ(others_.cards(uid_).at("b"), edited);
}

TEST_F(EdsServiceTest, SeesChangesMadeRightBeforeTheSave)
{
    holds({"a", "b", "c", "d"});
    book().readPeople();
    ask({"a", "b", "c"});
    others_.remove(uid_, {"a"});
    others_.edit(uid_, cardOf("b", "NICKNAME:Bee\r\n"));

    EXPECT_EQ(failureOf([&] { book().save(); }),
              "Not everybody was deleted. Of 3 people, 1 was deleted, 1 was already gone, 1 has "
              "changed and was not deleted. Reload the address book before you delete more.");
    auto left = others_.uids(uid_);
    std::sort(left.begin(), left.end());
    EXPECT_EQ(left, (Lines{"b", "d"}));
}

TEST_F(EdsServiceTest, DoesNotMistakeANewEntryForTheReviewedOneWithTheSameId)
{
    holds({"a", "b"});
    book().readPeople();
    others_.remove(uid_, {"a"});
    others_.add(uid_, {"BEGIN:VCARD\r\nVERSION:3.0\r\nUID:a\r\nFN:New\r\nEND:VCARD\r\n"});
    ask({"a"});

    EXPECT_NE(failureOf([&] { book().save(); }), "");
    EXPECT_EQ(others_.uids(uid_).size(), 2U);
}

TEST_F(EdsServiceTest, DeletesWhenTheServiceIsKilledInBetween)
{
    holds({"a", "b", "c"});
    const auto before = others_.cards(uid_);
    book().readPeople();
    ask({"a", "c"});
    ASSERT_GT(desktop().signalFactories(SIGKILL), 0U);

    EXPECT_EQ(failureOf([&] { book().save(); }), "");

    OtherClient another;
    EXPECT_EQ(another.cards(uid_), (Cards{{"b", before.at("b")}}));
}

TEST_F(EdsServiceTest, CountsCorrectlyWhenTheServiceIsKilledRepeatedly)
{
    constexpr std::size_t kPeople = 4'000;
    constexpr int kKills = 3;
    Lines uids;
    for (std::size_t i = 0; i < kPeople; ++i) {
        uids.push_back("p" + std::to_string(i));
    }
    holds(uids);
    std::atomic<int> removals = 0;
    EdsAddressBook shaken(std::make_unique<ServiceWithIncident>(
                              [&] {
                                  ++removals;
                                  removals.notify_all();
                              },
                              [] {}),
                          uid_);
    for (const auto& person : shaken.readPeople().subspan(0, kPeople / 2)) {
        shaken.removeRecord(person);
    }

    std::string failure;
    std::thread saving([&] {
        failure = failureOf([&] { shaken.save(); });
        // No more removals come: ends the loop below.
        removals += kKills;
        removals.notify_all();
    });
    for (int kills = 0, seen = 0; kills < kKills; ++kills) {
        removals.wait(seen);
        seen = removals;
        desktop().signalFactories(SIGKILL);
    }
    saving.join();

    OtherClient another;
    const auto left = another.uids(uid_);
    // Everybody else is still there, whatever the outcome of the deletion.
    for (std::size_t i = kPeople / 2; i < kPeople; ++i) {
        EXPECT_NE(std::find(left.begin(), left.end(), uids[i]), left.end());
    }
    const auto gone = kPeople - left.size();
    if (failure.empty()) {
        EXPECT_EQ(gone, kPeople / 2);
        return;
    }
    const auto counts = countsIn(failure);
    EXPECT_EQ(counts.removed + counts.gone + counts.changed + counts.left + counts.unknown +
                  counts.untried,
              kPeople / 2)
        << failure;
    EXPECT_LE(counts.removed, gone) << failure;
    EXPECT_LE(gone, counts.removed + counts.unknown) << failure;
}

TEST_F(EdsServiceTest, CountsCorrectlyWhenTheServicePausesDuringARemoval)
{
    holds({"a", "b", "c"});
    EdsAddressBook slow(
        std::make_unique<ServiceWithIncident>([] { desktop().signalFactories(SIGSTOP); },
                                              [] { desktop().signalFactories(SIGCONT); }),
        uid_);
    for (const auto& person : slow.readPeople().subspan(0, 2)) {
        slow.removeRecord(person);
    }

    const auto failure = failureOf([&] { slow.save(); });

    OtherClient another;
    const auto gone = 3 - another.uids(uid_).size();
    if (failure.empty()) {
        EXPECT_EQ(gone, 2U);
        return;
    }
    const auto counts = countsIn(failure);
    EXPECT_LE(counts.removed, gone) << failure;
    EXPECT_LE(gone, counts.removed + counts.unknown) << failure;
}

TEST_F(EdsServiceTest, ReportsARemovalAsUnknownWhenTheServicePausesBeforeIt)
{
    holds({"a", "b", "c"});
    EdsAddressBook stopped(
        std::make_unique<ServiceWithIncident>([] { desktop().signalFactories(SIGSTOP); }, [] {}),
        uid_);
    for (const auto& person : stopped.readPeople().subspan(0, 2)) {
        stopped.removeRecord(person);
    }

    std::string failure;
    const auto seconds = secondsOf([&] { failure = failureOf([&] { stopped.save(); }); });
    desktop().signalFactories(SIGCONT);

    EXPECT_LT(seconds, 15);
    const auto counts = countsIn(failure);
    EXPECT_EQ(counts.removed, 0U) << failure;
    EXPECT_EQ(counts.unknown, 2U) << failure;
    const auto uids = others_.uids(uid_);
    EXPECT_NE(std::find(uids.begin(), uids.end(), "c"), uids.end());
}

TEST_F(EdsServiceTest, DistinguishesTimeoutsFromOtherFailures)
{
    const auto broken = uid_ + "2";
    others_.makeBook(broken, "Nowhere", "nosuchkind");
    holds({"a"});
    const auto service = loadContactService();
    service->books();
    const auto before = service->read({uid_, broken});
    EXPECT_EQ(before[0].failure, "");
    EXPECT_FALSE(before[0].hasTimedOut);
    EXPECT_NE(before[1].failure, "");
    EXPECT_FALSE(before[1].hasTimedOut);

    ASSERT_GT(desktop().signalFactories(SIGSTOP), 0U);
    const auto found = service->find(uid_, {"a"});
    desktop().signalFactories(SIGCONT);

    EXPECT_TRUE(found.hasTimedOut);
    EXPECT_EQ(found.failure, "The service did not reply in time.");
}

TEST_F(EdsServiceTest, ReportsThatTheServiceDoesNotReplyToADeletion)
{
    holds({"a", "b", "c"});
    book().readPeople();
    ask({"a", "c"});
    ASSERT_GT(desktop().signalFactories(SIGSTOP), 0U);
    std::string failure;

    const auto seconds = secondsOf([&] { failure = failureOf([&] { book().save(); }); });
    desktop().signalFactories(SIGCONT);

    EXPECT_LT(seconds, 15);
    EXPECT_EQ(failure,
              "Not everybody was deleted. Of 2 people, 2 were not tried. “Friends”: The service "
              "did not reply in time. Reload the address book before you delete more.");
    EXPECT_EQ(uidsOf(book().readPeople()), (Lines{"a", "b", "c"}));
}

TEST_F(EdsServiceTest, ReportsThatTheServiceDoesNotReplyToARead)
{
    holds({"a"});
    const auto service = loadContactService();
    service->books();
    book().readPeople();
    ASSERT_GT(desktop().signalFactories(SIGSTOP), 0U);

    // In parallel, because each takes as long as the time limit.
    std::vector<BookContent> contents;
    std::thread another([&] { contents = service->read({uid_}); });
    std::string failure;
    const auto seconds = secondsOf([&] { failure = failureOf([&] { book().readPeople(); }); });
    another.join();
    desktop().signalFactories(SIGCONT);

    EXPECT_LT(seconds, 15);
    EXPECT_EQ(failure, "“Friends” could not be read: The service did not reply in time.");
    EXPECT_EQ(contents.at(0).failure, "The service did not reply in time.");
    EXPECT_TRUE(contents.at(0).hasTimedOut);
    EXPECT_EQ(uidsOf(book().readPeople()), Lines{"a"});
}

TEST_F(EdsServiceTest, ReadsAndDeletesTenThousandPeopleWithinSeconds)
{
    constexpr std::size_t kPeople = 10'000;
    Lines cards;
    for (std::size_t i = 0; i < kPeople; ++i) {
        cards.push_back(cardOf("p" + std::to_string(i), "TEL;TYPE=HOME:555-0100\r\n"));
    }
    others_.add(uid_, cards);

    std::size_t count = 0;
    const auto reading = secondsOf([&] { count = book().readPeople().size(); });
    EXPECT_EQ(count, kPeople);
    EXPECT_LT(reading, 5);

    const auto deleting = secondsOf([&] {
        const auto people = book().people();
        for (std::size_t i = 0; i < people.size(); i += 10) {
            book().removeRecord(people[i]);
        }
        book().save();
    });
    EXPECT_LT(deleting, 10);
    EXPECT_EQ(others_.uids(uid_).size(), kPeople - kPeople / 10);
    RecordProperty("reading", std::to_string(reading));
    RecordProperty("deleting", std::to_string(deleting));
}

TEST_F(EdsServiceTest, AddsRemovedPeopleAgainByteForByte)
{
    others_.add(uid_, {cardOf("ann", "NOTE:one\\, two\\nthree\r\nX-OWN;X-P=\"a;b\":kept\r\n"
                                     "item1.TEL:555-0100\r\nitem1.X-ABLabel:Boat\r\n"),
                       cardOf("ben"), cardOf("cid")});
    const auto before = others_.cards(uid_);
    const auto service = loadContactService();
    service->books();
    service->read({uid_});
    ASSERT_EQ(service->remove(uid_, {"ann", "cid"}).outcome, RemovalResult::Outcome::Removed);

    const auto result = service->add(uid_, {before.at("ann"), before.at("cid")});

    EXPECT_EQ(result.outcome, AdditionResult::Outcome::Added) << result.reason;
    EXPECT_EQ(others_.cards(uid_), before);
}

TEST_F(EdsServiceTest, AddsNobodyWhenOneOfThemIsThereAlready)
{
    holds({"ann", "ben"});
    const auto before = others_.cards(uid_);
    const auto service = loadContactService();
    service->books();
    service->read({uid_});

    const auto result =
        service->add(uid_, {cardOf("new"), cardOf("ben", "NOTE:other\r\n"), cardOf("newer")});

    EXPECT_EQ(result.outcome, AdditionResult::Outcome::Exists) << result.reason;
    EXPECT_EQ(others_.cards(uid_), before);
}

TEST_F(EdsServiceTest, ReportsAnAdditionAsUnknownWhenTheServiceIsPaused)
{
    holds({"ann"});
    const auto service = loadContactService();
    service->books();
    service->read({uid_});
    ASSERT_GT(desktop().signalFactories(SIGSTOP), 0U);
    AdditionResult result;

    const auto seconds = secondsOf([&] { result = service->add(uid_, {cardOf("ben")}); });
    desktop().signalFactories(SIGCONT);

    EXPECT_LT(seconds, 10);
    EXPECT_EQ(result.outcome, AdditionResult::Outcome::NoReply);
    EXPECT_EQ(result.reason, "The service did not reply in time.");
}

TEST_F(EdsServiceTest, RemovesFewPeopleAtOnce)
{
    // The more people one call removes, the longer an edit can slip in between check and removal.
    const auto service = loadContactService();
    service->books();

    const auto batchSize = service->read({uid_}).at(0).batchSize;

    EXPECT_GT(batchSize, 1U);
    EXPECT_LE(batchSize, 20U);
}

TEST_F(EdsServiceTest, ReturnsTheCardsByteForByte)
{
    holds({"ann", "ben"});
    const auto people = book().readPeople();
    const std::vector<const Person*> chosen{&people[1]};

    EXPECT_EQ(opened().cardSource->cards(chosen), others_.cards(uid_).at("ben") + "\r\n");
}

// The service keeps a picture in a file of its own and deletes the file with the person.
TEST_F(EdsServiceTest, ReturnsTheCardsWithTheirPictures)
{
    const std::string picture(200, 'A');
    others_.add(uid_, {cardOf("ann", "PHOTO;ENCODING=b;TYPE=PNG:" + picture +
                                         "\r\n"
                                         "NOTE:after\r\n")});
    const auto stored = others_.cards(uid_).at("ann");
    ASSERT_EQ(stored.find("AAAA"), std::string::npos);
    const auto people = book().readPeople();
    const std::vector<const Person*> chosen{people.data()};

    const auto card = opened().cardSource->cards(chosen);

    const auto unfolded = std::regex_replace(card, std::regex("\r\n "), "");
    EXPECT_NE(unfolded.find("\r\nPHOTO;TYPE=PNG;ENCODING=b:" + picture + "\r\nNOTE:after\r\n"),
              std::string::npos)
        << card;
    others_.remove(uid_, {"ann"});
    others_.add(uid_, {card});
    EXPECT_EQ(others_.cards(uid_).at("ann"), stored);
}

TEST_F(EdsServiceTest, UndoesADeletionByteForByte)
{
    Lines cards;
    for (int i = 0; i < 50; ++i) {
        cards.push_back(
            cardOf("p" + std::to_string(i), "NOTE:one\\, two\\nthree\r\nX-OWN;X-P=\"a;b\":kept\r\n"
                                            "item1.TEL:555-0100\r\nitem1.X-ABLabel:Boat\r\n"
                                            "PHOTO;ENCODING=b;TYPE=PNG:" +
                                                std::string(200, 'A') + "\r\n"));
    }
    others_.add(uid_, cards);
    const auto before = others_.cards(uid_);
    book().readPeople();
    Lines uids;
    for (int i = 0; i < 50; i += 2) {
        uids.push_back("p" + std::to_string(i));
    }
    ask(uids);
    book().save();
    ASSERT_EQ(others_.uids(uid_).size(), 25U);

    const auto result = opened().cardRestorer->restoreLast();

    EXPECT_EQ(result.restored, 25U);
    EXPECT_EQ(result.failures, Lines());
    EXPECT_EQ(result.remarks, Lines());
    EXPECT_EQ(others_.cards(uid_), before);
}

TEST_F(EdsServiceTest, UndoesADeletionFromSeveralBooksInEach)
{
    const auto second = uid_ + "2";
    others_.makeBook(second, "Others");
    holds({"ann", "ben"});
    others_.add(second, {cardOf("ann", "NOTE:other\r\n"), cardOf("cid")});
    const auto first = others_.cards(uid_);
    const auto other = others_.cards(second);
    const auto all = openEdsBook("eds:");
    for (const auto& person : all.addressBook->readPeople()) {
        if (person.uid == uid_ + "/ann" || person.uid == second + "/ann") {
            all.addressBook->removeRecord(person);
        }
    }
    all.addressBook->save();

    const auto result = all.cardRestorer->restoreLast();

    EXPECT_EQ(result.restored, 2U);
    EXPECT_EQ(others_.cards(uid_), first);
    EXPECT_EQ(others_.cards(second), other);
}

TEST_F(EdsServiceTest, LeavesAloneWhomAnotherProgramAddedWithTheSameUid)
{
    holds({"ann", "ben", "cid"});
    const auto before = others_.cards(uid_);
    book().readPeople();
    ask({"ann", "ben"});
    book().save();
    others_.add(uid_, {cardOf("ann", "NOTE:newer\r\n")});
    const auto newer = others_.cards(uid_).at("ann");

    const auto result = opened().cardRestorer->restoreLast();

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.failures, Lines{"“ann Lee” was not restored: its UID belongs to another card "
                                     "in “Friends”."});
    EXPECT_EQ(others_.cards(uid_).at("ann"), newer);
    EXPECT_EQ(others_.cards(uid_).at("ben"), before.at("ben"));
    EXPECT_EQ(opened().cardRestorer->lastRemoved(), 1U);
}

TEST_F(EdsServiceTest, ReportsAnUndoThatTheServiceDoesNotReplyTo)
{
    holds({"ann", "ben"});
    const auto before = others_.cards(uid_);
    EdsAddressBook stopped(std::make_unique<ServiceWithIncident>(
                               [calls = 0]() mutable {
                                   // The first change is the deletion.
                                   if (++calls == 2) {
                                       desktop().signalFactories(SIGSTOP);
                                   }
                               },
                               [] {}),
                           uid_);
    stopped.removeRecord(stopped.readPeople()[0]);
    stopped.save();

    Restoration result;
    const auto seconds = secondsOf([&] { result = stopped.restoreLast(); });
    desktop().signalFactories(SIGCONT);

    EXPECT_LT(seconds, 15);
    EXPECT_EQ(result.restored, 0U);
    EXPECT_EQ(result.failures, Lines{"“ann Lee” may or may not have been restored: “Friends”: The "
                                     "service did not reply in time."});
    EXPECT_EQ(stopped.lastRemoved(), 1U);
    OtherClient another;
    const auto isBack = another.uids(uid_).size() == 2;
    const auto again = stopped.restoreLast();
    EXPECT_EQ(again.present, isBack ? 1U : 0U);
    EXPECT_EQ(again.restored, isBack ? 0U : 1U);
    EXPECT_EQ(another.cards(uid_), before);
}

TEST_F(EdsServiceTest, UndoesADeletionWhenTheServiceIsKilledInBetween)
{
    holds({"a", "b", "c"});
    const auto before = others_.cards(uid_);
    book().readPeople();
    ask({"a", "c"});
    book().save();
    ASSERT_GT(desktop().signalFactories(SIGKILL), 0U);

    const auto result = opened().cardRestorer->restoreLast();

    EXPECT_EQ(result.restored, 2U);
    OtherClient another;
    EXPECT_EQ(another.cards(uid_), before);
}

TEST_F(EdsServiceTest, RestoresABackupOfAnotherProgramOnce)
{
    const std::string backup =
        "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Lee;Ann\r\nTEL;HOME:555-0100\r\nEND:VCARD\r\n"
        "BEGIN:VCARD\r\nVERSION:4.0\r\nUID:ben\r\nFN:Ben Lee\r\nN:Lee;Ben;;;\r\n"
        "TEL;VALUE=uri;TYPE=\"home\":tel:+1-555-0101\r\nEND:VCARD\r\n";
    auto& restorer = *opened().cardRestorer;

    const auto first = restorer.restore(backup, CardRestorer::Mode::Write);
    const auto stored = others_.cards(uid_);
    const auto second = restorer.restore(backup, CardRestorer::Mode::Write);

    EXPECT_EQ(first.restored, 2U);
    EXPECT_EQ(second.present, 2U);
    EXPECT_EQ(second.restored, 0U);
    EXPECT_EQ(second.failures, Lines());
    EXPECT_EQ(stored.size(), 2U);
    EXPECT_EQ(others_.cards(uid_), stored);
}

TEST_F(EdsServiceTest, DeletesAndUndoesAThousandOfTenThousandPeopleWithinSeconds)
{
    constexpr std::size_t kPeople = 10'000;
    Lines cards;
    for (std::size_t i = 0; i < kPeople; ++i) {
        cards.push_back(cardOf("p" + std::to_string(i)));
    }
    others_.add(uid_, cards);
    const auto people = book().readPeople();
    for (std::size_t i = 0; i < people.size(); i += 10) {
        book().removeRecord(people[i]);
    }
    book().save();

    Restoration result;
    const auto seconds = secondsOf([&] { result = opened().cardRestorer->restoreLast(); });

    EXPECT_EQ(result.restored, kPeople / 10);
    EXPECT_LT(seconds, 10);
    EXPECT_EQ(others_.uids(uid_).size(), kPeople);
    RecordProperty("undoing", std::to_string(seconds));
}

}  // namespace
}  // namespace dunmora::test
