#include "review/GroupWarnings.h"

#include "base/Settings.h"
#include "engine/ContactsParser.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/People.h"

#include <gtest/gtest.h>

#include <numeric>
#include <utility>

namespace dunmora::test {
namespace {

constexpr auto kLoss = GroupWarning::LosesEveryCopy;
constexpr auto kDoubt = GroupWarning::SharesOnlyEmptyFields;

class GroupWarningsTest : public testing::Test {
protected:
    /// Rows in groups of equal first names; without a first name there is no last name either.
    /// Nobody has a phone number, so that everyone is checked at first.
    void reviewShows(const std::vector<std::string>& firstNames)
    {
        std::vector<FakePerson> people;
        for (const auto& firstName : firstNames) {
            auto& added = people.emplace_back(person(std::to_string(people.size()), firstName));
            added.lastName = firstName.empty() ? "" : "Lee";
            added.phones.reset();
        }
        platform_.addressBook = FakeAddressBook(std::move(people));
        engine_.load();
        engine_.findDupes();
        warnings_.update(engine_);
    }

    void check(std::size_t row, bool on)
    {
        engine_.contacts().find(engine_.duplicates()[row])->setObject(on, kContactCheck);
    }

    void edit(const std::vector<std::size_t>& rows, bool on)
    {
        for (const auto row : rows) {
            check(row, on);
        }
        warnings_.rowsEdited(engine_, rows);
    }

    FakePlatform platform_;
    ContactsParser engine_;
    GroupWarnings warnings_;
};

TEST_F(GroupWarningsTest, CountEveryoneWhomADeletionWouldRemove)
{
    reviewShows({"Ann", "Ann", "Ben", "Cid", "Cid"});
    engine_.contacts().find("2")->setObject(true, kContactCheck);
    EXPECT_EQ(warnings_.checkedPeople(), 4U);

    warnings_.update(engine_);
    EXPECT_EQ(warnings_.checkedPeople(), 5U);

    edit({0, 3}, false);
    EXPECT_EQ(warnings_.checkedPeople(), 3U);
    edit({0, 0}, true);
    EXPECT_EQ(warnings_.checkedPeople(), 4U);

    warnings_.clear();
    EXPECT_EQ(warnings_.checkedPeople(), 0U);
}

TEST_F(GroupWarningsTest, KnowTheGroupOfEveryRow)
{
    reviewShows({"Ann", "Ann", "Ben", "Ben", "Ben"});

    EXPECT_EQ(warnings_.groupOfRow(0), 0U);
    EXPECT_EQ(warnings_.groupOfRow(1), 0U);
    EXPECT_EQ(warnings_.groupOfRow(2), 1U);
    EXPECT_EQ(warnings_.groupOfRow(4), 1U);
    EXPECT_EQ(warnings_.groupOfRow(5), std::nullopt);
}

TEST_F(GroupWarningsTest, KnowTheRowsOfEveryGroup)
{
    reviewShows({"Ann", "Ann", "Ben", "Ben", "Ben"});

    ASSERT_EQ(warnings_.groupCount(), 2U);
    EXPECT_EQ(warnings_.rowsOfGroup(0), (RowRange{0, 2}));
    EXPECT_EQ(warnings_.rowsOfGroup(1), (RowRange{2, 3}));
}

TEST_F(GroupWarningsTest, AreNoneBeforeAReview)
{
    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 0U);
    EXPECT_EQ(warnings_.peopleWhoShareOnlyEmptyFields(), 0U);
    EXPECT_EQ(warnings_.groupOfRow(0), std::nullopt);
    EXPECT_FALSE(warnings_.hasWarning(0, kLoss));
    EXPECT_EQ(warnings_.nextRow(kLoss, std::nullopt), std::nullopt);
    EXPECT_TRUE(warnings_.firstRowsThatLoseEveryCopy().empty());
}

TEST_F(GroupWarningsTest, CountAPersonForEveryGroupThatIsCheckedAsAWhole)
{
    reviewShows({"Ann", "Ann", "Ann", "Ben", "Ben"});
    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 2U);

    edit({1}, false);

    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 1U);
    EXPECT_FALSE(warnings_.hasWarning(0, kLoss));
    EXPECT_FALSE(warnings_.hasWarning(2, kLoss));
    EXPECT_TRUE(warnings_.hasWarning(3, kLoss));
    EXPECT_TRUE(warnings_.hasWarning(4, kLoss));
}

TEST_F(GroupWarningsTest, CountEverybodyWhoSharesOnlyEmptyFields)
{
    reviewShows({"Ann", "Ann", "", "", ""});

    EXPECT_EQ(warnings_.peopleWhoShareOnlyEmptyFields(), 3U);
    EXPECT_FALSE(warnings_.hasWarning(1, kDoubt));
    EXPECT_TRUE(warnings_.hasWarning(2, kDoubt));
    EXPECT_TRUE(warnings_.hasWarning(4, kDoubt));
}

TEST_F(GroupWarningsTest, CountTheCheckedAmongThoseWhoShareOnlyEmptyFields)
{
    reviewShows({"Ann", "Ann", "", "", ""});

    edit({1, 3}, false);

    EXPECT_EQ(warnings_.peopleWhoShareOnlyEmptyFields(), 3U);
    EXPECT_EQ(warnings_.checkedPeopleWhoShareOnlyEmptyFields(), 2U);
}

TEST_F(GroupWarningsTest, AreThoseOfTheSearchWhateverThePreferencesAreNow)
{
    // By the last name alone the first four would be one person, and the key of empty fields would
    // be shorter.
    reviewShows({"Ann", "Ann", "Ben", "Ben", "", ""});
    Settings::settings().setFilterFirstname(false);

    engine_.deleteContacts({"1"});
    warnings_.update(engine_);

    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 3U);
    EXPECT_EQ(warnings_.groupOfRow(0), 0U);
    EXPECT_EQ(warnings_.groupOfRow(1), 1U);
    EXPECT_EQ(warnings_.peopleWhoShareOnlyEmptyFields(), 2U);
    EXPECT_TRUE(warnings_.hasWarning(3, kDoubt));
}

TEST_F(GroupWarningsTest, DoNotDoubtTheLastPersonOfAGroup)
{
    reviewShows({"", ""});
    engine_.deleteContacts({"1"});

    warnings_.update(engine_);

    EXPECT_EQ(warnings_.peopleWhoShareOnlyEmptyFields(), 0U);
    EXPECT_FALSE(warnings_.hasWarning(0, kDoubt));
}

TEST_F(GroupWarningsTest, FollowMarksThatAreSetAgain)
{
    reviewShows({"Ann", "Ann", "Ben", "Ben"});

    edit({0, 2}, false);
    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 0U);

    edit({0}, true);
    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 1U);

    // A row that is named twice, and one that was marked already, are not counted twice.
    edit({2, 3, 2}, true);
    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 2U);
}

TEST_F(GroupWarningsTest, ReadOnlyTheEditedRows)
{
    reviewShows({"Ann", "Ann", "Ben", "Ben"});

    check(2, false);
    edit({0}, false);

    EXPECT_TRUE(warnings_.hasWarning(2, kLoss));
    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 1U);
}

TEST_F(GroupWarningsTest, IgnoreEditsOfRowsThatDoNotExist)
{
    reviewShows({"Ann", "Ann"});

    warnings_.rowsEdited(engine_, std::vector<std::size_t>{2, 99});

    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 1U);
}

TEST_F(GroupWarningsTest, IgnoreEditsOfRowsThatTheEngineNoLongerHas)
{
    reviewShows({"Ann", "Ann"});
    check(0, false);
    engine_.reset();

    warnings_.rowsEdited(engine_, std::vector<std::size_t>{0});

    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 1U);
}

TEST_F(GroupWarningsTest, WarnOfAPersonWhoseOnlyRowLeftIsChecked)
{
    reviewShows({"Ann", "Ann", "Ben", "Ben"});
    engine_.deleteContacts({"1"});
    edit({0}, false);
    warnings_.update(engine_);
    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 1U);

    edit({0}, true);

    EXPECT_TRUE(warnings_.hasWarning(0, kLoss));
    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 2U);
}

TEST_F(GroupWarningsTest, DoNotCountAnUnknownPersonAsChecked)
{
    reviewShows({"Ann", "Ann"});
    engine_.contacts().erase("0");

    warnings_.update(engine_);

    EXPECT_FALSE(warnings_.hasWarning(0, kLoss));
    EXPECT_FALSE(warnings_.hasWarning(1, kLoss));
}

TEST_F(GroupWarningsTest, ForgetEverythingWhenCleared)
{
    reviewShows({"Ann", "Ann", "", ""});

    warnings_.clear();

    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 0U);
    EXPECT_EQ(warnings_.peopleWhoShareOnlyEmptyFields(), 0U);
    EXPECT_EQ(warnings_.groupOfRow(0), std::nullopt);
    EXPECT_EQ(warnings_.nextRow(kLoss, 0), std::nullopt);

    // Edits that arrive late change nothing.
    edit({0}, false);
    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 0U);
}

TEST_F(GroupWarningsTest, GoToTheNextGroupAndFromTheLastToTheFirst)
{
    reviewShows({"Ann", "Ann", "Ben", "Ben", "Cid", "Cid", "Dan", "Dan"});
    edit({2, 6}, false);

    EXPECT_EQ(warnings_.nextRow(kLoss, std::nullopt), 0U);
    EXPECT_EQ(warnings_.nextRow(kLoss, 0), 4U);
    EXPECT_EQ(warnings_.nextRow(kLoss, 1), 4U);
    EXPECT_EQ(warnings_.nextRow(kLoss, 3), 4U);
    EXPECT_EQ(warnings_.nextRow(kLoss, 5), 0U);
    EXPECT_EQ(warnings_.nextRow(kLoss, 7), 0U);
    EXPECT_EQ(warnings_.nextRow(kLoss, 99), 0U);
    EXPECT_EQ(warnings_.nextRow(kDoubt, 0), std::nullopt);
}

TEST_F(GroupWarningsTest, ComeBackToTheOnlyGroup)
{
    reviewShows({"Ann", "Ann", "", ""});

    EXPECT_EQ(warnings_.nextRow(kDoubt, 3), 2U);
}

TEST_F(GroupWarningsTest, NameTheFirstRowOfEveryGroupThatLosesAll)
{
    reviewShows({"Ann", "Ann", "Ben", "Ben", "Cid", "Cid"});
    edit({3}, false);

    EXPECT_EQ(warnings_.firstRowsThatLoseEveryCopy(), (std::vector<std::size_t>{0, 4}));
}

TEST_F(GroupWarningsTest, HandleManyRowsAtOnce)
{
    constexpr std::size_t kRows = 20'000;
    reviewShows(std::vector<std::string>(kRows, "Ann"));
    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 1U);
    std::vector<std::size_t> rows(kRows);
    std::iota(rows.begin(), rows.end(), 0U);

    // Counting the whole group for every row would take minutes.
    edit(rows, false);
    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 0U);

    edit(rows, true);
    EXPECT_EQ(warnings_.peopleWhoLoseEveryCopy(), 1U);
}

}  // namespace
}  // namespace dunmora::test
