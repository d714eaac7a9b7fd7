#include "review/KeptProperties.h"

#include "tests/review/Cards.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <utility>

namespace dunmora::test {
namespace {

class KeptPropertiesTest : public testing::Test {
protected:
    void addGroup(const std::vector<PersonCard>& cards)
    {
        std::vector<CardKeys> keys(cards.size());
        for (std::size_t i = 0; i < cards.size(); ++i) {
            keys[i].read(cards[i]);
        }
        kept_.addGroup(keys);
        isChecked_.resize(kept_.rows());
    }

    void check(const std::vector<std::size_t>& rows, bool on = true)
    {
        for (const auto row : rows) {
            isChecked_[row] = on;
        }
        kept_.rowsEdited(rows, [&](std::size_t row) { return isChecked_[row]; });
    }

    std::vector<std::size_t> uniqueRows() const
    {
        std::vector<std::size_t> rows;
        for (std::size_t row = 0; row < kept_.rows(); ++row) {
            if (kept_.isOnlyInRow(row)) {
                rows.push_back(row);
            }
        }
        EXPECT_EQ(kept_.count(), rows.size());
        return rows;
    }

    using Rows = std::vector<std::size_t>;

    KeptProperties kept_;
    std::vector<bool> isChecked_;
};

PersonCard withNumbers(const std::vector<std::string>& numbers)
{
    PersonCard result;
    for (const auto& number : numbers) {
        result.properties.push_back(text("TEL", number));
    }
    return result;
}

TEST_F(KeptPropertiesTest, OfEqualCardsAreThoseOfCardsThatWereRead)
{
    constexpr std::size_t kRows = 3;
    const auto same = withNumbers({"030 123456", "030 654321"});
    addGroup({withNumbers({"1"}), withNumbers({"2"})});
    const auto equalBegin = kept_.rows();
    kept_.addGroupOfEqual(kRows);
    addGroup({same, same, same});
    std::mt19937 random(14);

    for (int i = 0; i < 100; ++i) {
        const auto row = random() % kRows;
        const bool on = random() % 2 == 0;
        check({equalBegin + row, equalBegin + kRows + row}, on);

        for (std::size_t j = 0; j < kRows; ++j) {
            const auto equal = equalBegin + j;
            EXPECT_EQ(kept_.isOnlyInRow(equal), kept_.isOnlyInRow(equal + kRows));
            EXPECT_EQ(kept_.otherKeptRows(equal, kRows).size(),
                      kept_.otherKeptRows(equal + kRows, kRows).size());
            EXPECT_EQ(kept_.isKept(equal, 0), kept_.isKept(equal + kRows, 0));
        }
    }
}

TEST_F(KeptPropertiesTest, OfAnotherObjectAreTheSameAfterThose)
{
    const std::vector one{withNumbers({"1", "2"}), withNumbers({"1"}), withNumbers({"2"})};
    const std::vector other{withNumbers({"3"}), withNumbers({"3", "1"})};
    addGroup(one);
    kept_.addGroupOfEqual(2);
    addGroup(other);
    addGroup(one);
    auto inOneGo = std::exchange(kept_, {});
    addGroup(one);
    auto first = std::exchange(kept_, {});
    kept_.addGroupOfEqual(2);
    addGroup(other);
    auto second = std::exchange(kept_, {});
    addGroup(one);
    first.append({});
    first.append(second);
    first.append(kept_);
    kept_ = std::move(first);
    ASSERT_EQ(kept_.rows(), inOneGo.rows());
    isChecked_.assign(kept_.rows(), false);
    std::mt19937 random(14);

    for (int i = 0; i < 300; ++i) {
        const auto changed = random() % kept_.rows();
        check({changed}, random() % 2 == 0);
        inOneGo.rowsEdited(Rows{changed}, [&](std::size_t row) { return isChecked_[row]; });

        ASSERT_EQ(kept_.count(), inOneGo.count());
        for (std::size_t row = 0; row < kept_.rows(); ++row) {
            ASSERT_EQ(kept_.groupOf(row), inOneGo.groupOf(row));
            ASSERT_EQ(kept_.isOnlyInRow(row), inOneGo.isOnlyInRow(row));
            ASSERT_EQ(kept_.isKept(row, 0), inOneGo.isKept(row, 0));
            ASSERT_EQ(kept_.otherKeptRows(row, 9), inOneGo.otherKeptRows(row, 9));
        }
    }
}

TEST_F(KeptPropertiesTest, KnowTheGroupsOfTheirRows)
{
    addGroup({withNumbers({"1"}), withNumbers({"2"})});
    kept_.addGroupOfEqual(2);

    EXPECT_EQ(kept_.groupOf(1), 0U);
    EXPECT_EQ(kept_.groupOf(2), 1U);
}

TEST_F(KeptPropertiesTest, AreThoseOfTheUncheckedRows)
{
    addGroup({withNumbers({"1", "2"}), withNumbers({"1"}), withNumbers({"2"})});
    EXPECT_EQ(uniqueRows(), Rows{});

    check({0});
    EXPECT_EQ(uniqueRows(), Rows{});
    EXPECT_TRUE(kept_.isKept(0, 0));

    check({1});
    EXPECT_EQ(uniqueRows(), (Rows{0, 1}));
    EXPECT_FALSE(kept_.isKept(0, 0));
    EXPECT_TRUE(kept_.isKept(0, 1));

    check({0}, false);
    EXPECT_EQ(uniqueRows(), Rows{});
}

TEST_F(KeptPropertiesTest, AreNoneWhenAllRowsAreChecked)
{
    addGroup({withNumbers({"1"}), withNumbers({"1"}), withNumbers({})});

    check({0, 1, 2});

    EXPECT_EQ(uniqueRows(), (Rows{0, 1}));
}

TEST_F(KeptPropertiesTest, DoNotCountForAnotherGroup)
{
    addGroup({withNumbers({"1"}), withNumbers({})});
    addGroup({withNumbers({"1"}), withNumbers({})});

    check({0});

    EXPECT_EQ(uniqueRows(), Rows{0});
}

TEST_F(KeptPropertiesTest, OfAnUncheckedRowAreThoseOfTheOthers)
{
    addGroup({withNumbers({"1", "1", "2"}), withNumbers({"2"})});

    EXPECT_FALSE(kept_.isKept(0, 0));
    EXPECT_FALSE(kept_.isKept(0, 1));
    EXPECT_TRUE(kept_.isKept(0, 2));
}

TEST_F(KeptPropertiesTest, FindNationalNumbersInInternationalOnes)
{
    addGroup({withNumbers({"+49 30 1234567"}), withNumbers({"030 1234567"})});

    check({1});
    EXPECT_EQ(uniqueRows(), Rows{});
    check({1}, false);
    check({0});
    EXPECT_EQ(uniqueRows(), Rows{});
}

TEST_F(KeptPropertiesTest, NeverIncludeACardThatCannotBeRead)
{
    std::vector<CardKeys> keys(2);
    keys[0].setUnknown();
    kept_.addGroup(keys);
    isChecked_.resize(2);

    EXPECT_EQ(uniqueRows(), Rows{});
    check({0});
    EXPECT_EQ(uniqueRows(), Rows{0});
}

TEST_F(KeptPropertiesTest, IgnoreRowsThatDoNotExistOrAreNamedTwice)
{
    addGroup({withNumbers({"1"}), withNumbers({"1"})});
    isChecked_.resize(100);

    check({0, 99, 0});
    check({0});
    EXPECT_EQ(uniqueRows(), Rows{});
    check({1});

    EXPECT_EQ(uniqueRows(), (Rows{0, 1}));
}

TEST_F(KeptPropertiesTest, ListTheOtherUncheckedRowsOfAGroup)
{
    addGroup({withNumbers({}), withNumbers({})});
    addGroup({withNumbers({}), withNumbers({}), withNumbers({}), withNumbers({})});
    check({3});

    EXPECT_EQ(kept_.otherKeptRows(2, 9), (Rows{4, 5}));
    EXPECT_EQ(kept_.otherKeptRows(3, 9), (Rows{2, 4, 5}));
    EXPECT_EQ(kept_.otherKeptRows(3, 1), Rows{2});
    EXPECT_EQ(kept_.otherKeptRows(0, 9), Rows{1});
}

/// What is unique by definition: compares each row with every other.
std::vector<std::size_t> uniqueRowsOf(const std::vector<std::vector<std::string>>& rows,
                                      const std::vector<bool>& isChecked, std::size_t groupSize)
{
    std::vector<std::size_t> found;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const auto first = row - row % groupSize;
        const auto isKept = [&](const std::string& number) {
            for (std::size_t other = first; other < first + groupSize; ++other) {
                if (!isChecked[other] && std::find(rows[other].begin(), rows[other].end(),
                                                   number) != rows[other].end()) {
                    return true;
                }
            }
            return false;
        };
        if (isChecked[row] && !std::all_of(rows[row].begin(), rows[row].end(), isKept)) {
            found.push_back(row);
        }
    }
    return found;
}

TEST_F(KeptPropertiesTest, FollowAnyEdits)
{
    constexpr std::size_t kGroup = 5;
    std::mt19937 random(1);  // NOLINT(cert-msc32-c,cert-msc51-cpp): every run tries the same.
    std::vector<std::vector<std::string>> numbers(20 * kGroup);
    for (std::size_t first = 0; first < numbers.size(); first += kGroup) {
        std::vector<PersonCard> cards;
        for (std::size_t row = first; row < first + kGroup; ++row) {
            for (auto count = random() % 4; count > 0; --count) {
                numbers[row].push_back(std::to_string(random() % 6));
            }
            cards.push_back(withNumbers(numbers[row]));
        }
        addGroup(cards);
    }

    for (int edit = 0; edit < 300; ++edit) {
        Rows rows(1 + random() % 30);
        for (auto& row : rows) {
            row = random() % numbers.size();
        }
        check(rows, random() % 2 == 0);
        ASSERT_EQ(uniqueRows(), uniqueRowsOf(numbers, isChecked_, kGroup)) << edit;
    }
}

}  // namespace
}  // namespace dunmora::test
