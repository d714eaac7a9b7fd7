#pragma once

#include "platform/AddressBook.h"
#include "platform/CardRestorer.h"
#include "platform/CardSource.h"
#include "platform/PlatformError.h"
#include "tests/fakes/FakeAddressBook.h"
#include "tests/fakes/FakeCard.h"
#include "tests/fakes/People.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

/// What every CardRestorer must do. Instantiate it with a type that has these members besides those
/// of AddressBookContract:
///
///     CardSource& cardSource();
///     CardRestorer& restorer();
///     void addBehindTheBack(const FakePerson& person);  // as another program would
///     void breakRestoring();                            // also for a book that others changed
///     void mendRestoring();
///
/// A book that decides on its people's places supports no "PutsPeopleBackWhereTheyWere".
template <typename BookUnderTest>
class CardRestorerContract : public testing::Test {
protected:
    void SetUp() override
    {
        if constexpr (requires { BookUnderTest::whyNot(""); }) {
            const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
            if (const auto reason = BookUnderTest::whyNot(test->name())) {
                GTEST_SKIP() << *reason;
            }
        }
    }

    using Uids = std::vector<std::string>;
    using Mode = CardRestorer::Mode;

    AddressBook& book() { return underTest_.book(); }
    CardRestorer& restorer() { return underTest_.restorer(); }
    BookUnderTest& underTest() { return underTest_; }

    void holds(const Uids& uids)
    {
        std::vector<FakePerson> people;
        for (const auto& uid : uids) {
            people.push_back(person(uid, "Name of " + uid));
        }
        underTest_.hold(people);
    }

    /// Reads the book, removes these people and saves it.
    void deletes(const Uids& uids)
    {
        for (const auto& each : book().readPeople()) {
            if (std::find(uids.begin(), uids.end(), each.uid) != uids.end()) {
                book().removeRecord(each);
            }
        }
        book().save();
    }

    Uids sortedUids()
    {
        auto uids = underTest_.uidsSeenByOthers();
        std::sort(uids.begin(), uids.end());
        return uids;
    }

    /// The cards of these people of a new reading.
    std::string cardsOf(const Uids& uids)
    {
        std::vector<const Person*> people;
        for (const auto& each : book().readPeople()) {
            if (std::find(uids.begin(), uids.end(), each.uid) != uids.end()) {
                people.push_back(&each);
            }
        }
        return underTest_.cardSource().cards(people);
    }

    /// Everyone's card by uid.
    std::map<std::string, std::string> allCards()
    {
        std::map<std::string, std::string> cards;
        for (const auto& each : book().readPeople()) {
            const auto* const pointer = &each;
            cards.emplace(each.uid, underTest_.cardSource().cards({&pointer, 1}));
        }
        return cards;
    }

    /// Restores the last deletion; nothing when that threw.
    std::optional<Restoration> triesToRestore()
    {
        try {
            return restorer().restoreLast();
        } catch (const PlatformError&) {
            return std::nullopt;
        }
    }

private:
    BookUnderTest underTest_;
};

TYPED_TEST_SUITE_P(CardRestorerContract);

TYPED_TEST_P(CardRestorerContract, HasNothingToUndoBeforeADeletion)
{
    this->holds({"a", "b"});
    this->book().readPeople();
    this->book().save();
    const auto before = this->underTest().trace();

    EXPECT_EQ(this->restorer().lastRemoved(), 0U);
    EXPECT_EQ(this->restorer().lastRemovedCards(), "");
    const auto result = this->restorer().restoreLast();

    EXPECT_EQ(result.restored, 0U);
    EXPECT_TRUE(result.failures.empty());
    EXPECT_EQ(this->underTest().trace(), before);
}

TYPED_TEST_P(CardRestorerContract, KeepsTheRemovedCards)
{
    this->holds({"a", "b", "c", "d"});
    const auto removed = this->cardsOf({"a", "d"});

    this->deletes({"a", "d"});

    EXPECT_EQ(this->restorer().lastRemoved(), 2U);
    EXPECT_EQ(this->restorer().lastRemovedCards(), removed);
}

TYPED_TEST_P(CardRestorerContract, PutsPeopleBackWithTheirCards)
{
    this->holds({"a", "b", "c", "d"});
    const auto before = this->allCards();
    this->deletes({"a", "d"});

    const auto result = this->restorer().restoreLast();

    EXPECT_EQ(result.restored, 2U);
    EXPECT_EQ(result.present, 0U);
    EXPECT_EQ(result.failures, (std::vector<std::string>()));
    EXPECT_EQ(this->allCards(), before);
    EXPECT_EQ(this->restorer().lastRemoved(), 0U);
    EXPECT_EQ(this->restorer().lastRemovedCards(), "");
}

TYPED_TEST_P(CardRestorerContract, PutsPeopleBackWhereTheyWere)
{
    this->holds({"m", "a", "z", "b", "c"});
    this->deletes({"a", "z", "c"});

    const auto result = this->restorer().restoreLast();

    EXPECT_EQ(result.remarks, (std::vector<std::string>()));
    EXPECT_EQ(this->underTest().uidsSeenByOthers(),
              (std::vector<std::string>{"m", "a", "z", "b", "c"}));
}

TYPED_TEST_P(CardRestorerContract, PutsEveryoneBack)
{
    this->holds({"a", "b", "c"});
    const auto before = this->allCards();
    this->deletes({"a", "b", "c"});

    this->restorer().restoreLast();

    EXPECT_EQ(this->allCards(), before);
}

TYPED_TEST_P(CardRestorerContract, ListsThePeopleWhoAreBack)
{
    this->holds({"a", "b", "c"});
    this->deletes({"b"});

    this->restorer().restoreLast();

    EXPECT_EQ(this->book().people().size(), 3U);
    this->deletes({"b"});
    EXPECT_EQ(this->sortedUids(), (std::vector<std::string>{"a", "c"}));
}

TYPED_TEST_P(CardRestorerContract, RemembersADeletionAcrossReadings)
{
    this->holds({"a", "b", "c"});
    this->deletes({"b"});

    this->book().readPeople();
    this->book().people();
    this->book().save();

    EXPECT_EQ(this->restorer().lastRemoved(), 1U);
    EXPECT_EQ(this->restorer().restoreLast().restored, 1U);
    EXPECT_EQ(this->sortedUids(), (std::vector<std::string>{"a", "b", "c"}));
}

TYPED_TEST_P(CardRestorerContract, UndoesSeveralDeletionsLastFirst)
{
    this->holds({"a", "b", "c", "d", "e"});
    const auto before = this->allCards();
    this->deletes({"b"});
    this->deletes({"a", "d"});
    EXPECT_EQ(this->restorer().deletions(), 2U);
    EXPECT_EQ(this->restorer().lastRemoved(), 2U);

    EXPECT_EQ(this->restorer().restoreLast().restored, 2U);

    EXPECT_EQ(this->sortedUids(), (std::vector<std::string>{"a", "c", "d", "e"}));
    EXPECT_EQ(this->restorer().deletions(), 1U);
    EXPECT_EQ(this->restorer().lastRemoved(), 1U);
    EXPECT_EQ(this->restorer().restoreLast().restored, 1U);
    EXPECT_EQ(this->allCards(), before);
    EXPECT_EQ(this->restorer().deletions(), 0U);
    EXPECT_EQ(this->restorer().lastRemoved(), 0U);
}

TYPED_TEST_P(CardRestorerContract, UndoesTwoDeletionsOfOneReading)
{
    this->holds({"a", "b", "c", "d"});
    const auto before = this->allCards();
    this->deletes({"b"});
    for (const auto& person : this->book().people()) {
        if (person.uid == "c") {
            this->book().removeRecord(person);
        }
    }
    this->book().save();

    EXPECT_EQ(this->restorer().restoreLast().restored, 1U);
    EXPECT_EQ(this->restorer().restoreLast().restored, 1U);

    EXPECT_EQ(this->allCards(), before);
}

TYPED_TEST_P(CardRestorerContract, RemembersNobodyWhenADeletionFails)
{
    this->holds({"a", "b"});
    this->book().removeRecord(this->book().readPeople()[0]);
    this->underTest().breakSaving();
    EXPECT_THROW(this->book().save(), PlatformError);
    this->underTest().mendSaving();

    EXPECT_EQ(this->restorer().lastRemoved(), 0U);
}

TYPED_TEST_P(CardRestorerContract, AddsPeopleToABookThatOthersHaveChanged)
{
    this->holds({"a", "b", "c"});
    const auto before = this->allCards();
    this->deletes({"a", "c"});
    this->underTest().addBehindTheBack(person("x"));

    const auto result = this->restorer().restoreLast();

    EXPECT_EQ(result.restored, 2U);
    EXPECT_EQ(result.failures, (std::vector<std::string>()));
    EXPECT_EQ(this->sortedUids(), (std::vector<std::string>{"a", "b", "c", "x"}));
    auto now = this->allCards();
    now.erase("x");
    EXPECT_EQ(now, before);
}

TYPED_TEST_P(CardRestorerContract, LeavesPeopleAloneWhoAreBackAlready)
{
    this->holds({"a", "b"});
    this->deletes({"b"});
    this->underTest().addBehindTheBack(person("b", "Name of b"));

    const auto result = this->restorer().restoreLast();

    EXPECT_EQ(result.restored, 0U);
    EXPECT_EQ(result.present, 1U);
    EXPECT_EQ(result.failures, (std::vector<std::string>()));
    EXPECT_EQ(this->sortedUids(), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(this->restorer().lastRemoved(), 0U);
}

TYPED_TEST_P(CardRestorerContract, RemembersPeopleWhoCouldNotBePutBack)
{
    this->holds({"a", "b", "c"});
    const auto removed = this->cardsOf({"b"});
    const auto before = this->allCards();
    this->deletes({"b"});

    this->underTest().breakRestoring();
    const auto result = this->triesToRestore();
    EXPECT_TRUE(!result || !result->failures.empty());
    EXPECT_EQ(this->restorer().lastRemoved(), 1U);
    EXPECT_EQ(this->restorer().lastRemovedCards(), removed);
    this->underTest().mendRestoring();
    EXPECT_EQ(this->sortedUids(), (std::vector<std::string>{"a", "c"}));

    EXPECT_EQ(this->restorer().restoreLast().restored, 1U);
    EXPECT_EQ(this->allCards(), before);
}

TYPED_TEST_P(CardRestorerContract, RestoresABackup)
{
    this->holds({"a", "b", "c"});
    const auto before = this->allCards();
    const auto backup = this->cardsOf({"a", "b"});
    this->deletes({"a"});

    const auto result = this->restorer().restore(backup, TestFixture::Mode::Write);

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.present, 1U);
    EXPECT_EQ(result.failures, (std::vector<std::string>()));
    EXPECT_EQ(this->allCards(), before);
}

TYPED_TEST_P(CardRestorerContract, RestoresABackupOnce)
{
    this->holds({"a", "b"});
    const auto backup = this->cardsOf({"a"});
    this->deletes({"a"});

    EXPECT_EQ(this->restorer().restore(backup + backup, TestFixture::Mode::Write).restored, 1U);
    const auto again = this->restorer().restore(backup, TestFixture::Mode::Write);

    EXPECT_EQ(again.restored, 0U);
    EXPECT_EQ(again.present, 1U);
    EXPECT_EQ(this->sortedUids(), (std::vector<std::string>{"a", "b"}));
}

TYPED_TEST_P(CardRestorerContract, OnlyReportsWhatADryRunWouldDo)
{
    this->holds({"a", "b"});
    const auto backup = this->cardsOf({"a", "b"});
    this->deletes({"a"});
    const auto before = this->underTest().trace();

    const auto result = this->restorer().restore(backup, TestFixture::Mode::DryRun);

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.present, 1U);
    EXPECT_EQ(this->underTest().trace(), before);
    EXPECT_EQ(this->sortedUids(), (std::vector<std::string>{"b"}));
}

TYPED_TEST_P(CardRestorerContract, NamesPeopleWhoseUidBelongsToAnotherCard)
{
    this->holds({"a", "b"});
    const auto before = this->allCards();
    const auto backup = cardOf(named("a", "Somebody", "Else")) + cardOf(named("c", "Carol"));

    const auto result = this->restorer().restore(backup, TestFixture::Mode::Write);

    EXPECT_EQ(result.restored, 1U);
    ASSERT_EQ(result.failures.size(), 1U);
    EXPECT_NE(result.failures[0].find("Somebody"), std::string::npos) << result.failures[0];
    auto now = this->allCards();
    EXPECT_EQ(now.erase("c"), 1U);
    EXPECT_EQ(now, before);
}

TYPED_TEST_P(CardRestorerContract, RefusesABackupWithoutCards)
{
    this->holds({"a"});
    const auto before = this->underTest().trace();

    EXPECT_THROW(this->restorer().restore("", TestFixture::Mode::Write), PlatformError);
    EXPECT_THROW(this->restorer().restore("Dear Ann,\r\n", TestFixture::Mode::DryRun),
                 PlatformError);

    EXPECT_EQ(this->underTest().trace(), before);
}

REGISTER_TYPED_TEST_SUITE_P(CardRestorerContract, HasNothingToUndoBeforeADeletion,
                            KeepsTheRemovedCards, PutsPeopleBackWithTheirCards,
                            PutsPeopleBackWhereTheyWere, PutsEveryoneBack, ListsThePeopleWhoAreBack,
                            RemembersADeletionAcrossReadings, UndoesSeveralDeletionsLastFirst,
                            UndoesTwoDeletionsOfOneReading, RemembersNobodyWhenADeletionFails,
                            AddsPeopleToABookThatOthersHaveChanged,
                            LeavesPeopleAloneWhoAreBackAlready, RemembersPeopleWhoCouldNotBePutBack,
                            RestoresABackup, RestoresABackupOnce, OnlyReportsWhatADryRunWouldDo,
                            NamesPeopleWhoseUidBelongsToAnotherCard, RefusesABackupWithoutCards);

}  // namespace dunmora::test
