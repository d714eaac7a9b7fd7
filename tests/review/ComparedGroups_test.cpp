#include "review/ComparedGroups.h"

#include "tests/review/Cards.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <optional>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {
namespace {

using Names = ComparedGroups::Names;

class ComparedGroupsTest : public testing::Test {
protected:
    /// Adds a group of cards that the book can compare.
    void addGroup(const std::vector<PersonCard>& cards)
    {
        auto& uids = uids_.emplace_back();
        for (const auto& one : cards) {
            uids.push_back(std::to_string(cards_.byUid.size()));
            cards_.byUid[uids.back()] = one;
            cards_.comparable.insert(uids.back());
        }
    }

    void addGroupThatCannotBeCompared()
    {
        addGroup({card({text("NOTE", "a")}), card({text("NOTE", "b")})});
        cards_.comparable.erase(uids_.back().back());
    }

    std::vector<GroupUids> groups() const { return {uids_.begin(), uids_.end()}; }

    /// The numbers of groups in each run of each part.
    std::vector<std::vector<std::size_t>> runsInParts(std::size_t rowsInPart) const
    {
        std::vector<std::vector<std::size_t>> counts;
        for (const auto& runs : compareGroups(groups(), cards_, 1, rowsInPart)) {
            auto& part = counts.emplace_back();
            for (const auto& run : runs) {
                part.push_back(run.count());
            }
        }
        return counts;
    }

    using Counts = std::vector<std::vector<std::size_t>>;

    FakeCards cards_;
    std::vector<std::vector<std::string>> uids_;
    ComparedGroups compared_;
};

TEST_F(ComparedGroupsTest, NameThePropertiesInWhichTheCardsDiffer)
{
    const auto same = card({text("FN", "Ann"), text("NOTE", "a")});
    addGroup({same, same, same});
    addGroup({same, card({text("FN", "Ann"), text("NOTE", "b"), text("UID", "1")})});
    addGroup({same, card({text("FN", "Bob"), text("NOTE", "a")})});
    addGroup({same, card({text("FN", "Ann"), text("REV", "2")})});

    for (const auto group : groups()) {
        EXPECT_TRUE(compared_.add(group, cards_));
    }

    EXPECT_EQ(compared_.count(), 4U);
    EXPECT_EQ(compared_.names(), (std::vector<Names>{{}, {"NOTE"}, {"FN", "N"}}));
    EXPECT_EQ(compared_.namesOfGroup(), (std::vector<std::uint32_t>{0, 1, 2, 1}));
    EXPECT_EQ(cards_.readings, 0);
}

TEST_F(ComparedGroupsTest, KnowTheSourceOfEachRow)
{
    auto ann = card({text("FN", "Ann")});
    auto other = ann;
    other.source = {"other.vcf", "other"};
    addGroup({ann, other});

    compared_.add(groups().front(), cards_);

    ASSERT_EQ(compared_.sources().size(), 2U);
    EXPECT_EQ(*compared_.sources()[0], ann.source);
    EXPECT_EQ(*compared_.sources()[1], other.source);
}

TEST_F(ComparedGroupsTest, LeaveOutAGroupThatCannotBeCompared)
{
    addGroupThatCannotBeCompared();

    EXPECT_FALSE(compared_.add(groups().front(), cards_));

    EXPECT_EQ(compared_.count(), 0U);
    EXPECT_EQ(compared_.kept().rows(), 0U);
    EXPECT_TRUE(compared_.sources().empty());
}

TEST_F(ComparedGroupsTest, LeaveOutAGroupWhoseDifferencesCannotBeRead)
{
    cards_.canReadNamed = false;
    addGroup({card({text("NOTE", "a")}), card({text("NOTE", "b")})});

    EXPECT_FALSE(compared_.add(groups().front(), cards_));

    EXPECT_EQ(compared_.count(), 0U);
    EXPECT_EQ(compared_.kept().rows(), 0U);
    EXPECT_TRUE(compared_.sources().empty());
}

TEST_F(ComparedGroupsTest, AreRunsBetweenThoseThatCannotBeCompared)
{
    const auto same = card({text("FN", "Ann")});
    addGroupThatCannotBeCompared();
    addGroup({same, same});
    addGroup({same, same});
    addGroupThatCannotBeCompared();
    addGroupThatCannotBeCompared();
    addGroup({same, same});

    EXPECT_EQ(runsInParts(100), (Counts{{0, 2, 0, 1}}));
    EXPECT_EQ(runsInParts(5), (Counts{{0, 2}, {0, 0, 1}}));
    EXPECT_EQ(runsInParts(1), (Counts{{0, 0}, {1}, {1}, {0, 0}, {0, 0}, {1}}));
}

TEST_F(ComparedGroupsTest, AreNoneInAnEmptyReview)
{
    EXPECT_EQ(runsInParts(1), Counts());
}

/// Fails for one group after another, on whatever thread.
class FailingCards final : public CardSource {
public:
    std::string cards(std::span<const Person* const> /*people*/) const override { return {}; }
    std::optional<PersonCard> card(std::string_view /*uid*/) const override { return {}; }
    bool compareStored(std::span<const std::string> uids,
                       CardDifferences& /*differences*/) const override
    {
        throw std::runtime_error(uids.front());
    }
};

TEST_F(ComparedGroupsTest, FailAsTheFirstGroupDoes)
{
    for (int i = 0; i < 50; ++i) {
        addGroup({card({})});
    }

    for (const std::size_t threads : {1, 4}) {
        try {
            compareGroups(groups(), FailingCards(), threads, 1);
            FAIL();
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "0");
        }
    }
}

TEST_F(ComparedGroupsTest, AreTheSameOnSeveralThreads)
{
    std::mt19937 random(14);
    const auto number = [&](std::size_t count) { return random() % count; };
    for (int i = 0; i < 300; ++i) {
        std::vector<PersonCard> cards(1 + number(4), card({text("FN", "Ann")}));
        for (auto& one : cards) {
            for (const auto* const name : {"NOTE", "TEL", "FN", "EMAIL"}) {
                if (number(3) == 0) {
                    one.properties.push_back(text(name, std::to_string(number(3))));
                }
            }
        }
        addGroup(cards);
        if (number(10) == 0) {
            addGroupThatCannotBeCompared();
        }
    }
    const auto expected = compareGroups(groups(), cards_, 1, 7);

    const auto compared = compareGroups(groups(), cards_, 4, 7);

    ASSERT_EQ(compared.size(), expected.size());
    for (std::size_t part = 0; part < compared.size(); ++part) {
        ASSERT_EQ(compared[part].size(), expected[part].size());
        for (std::size_t i = 0; i < compared[part].size(); ++i) {
            const auto& run = compared[part][i];
            const auto& same = expected[part][i];
            EXPECT_EQ(run.names(), same.names());
            EXPECT_EQ(run.namesOfGroup(), same.namesOfGroup());
            EXPECT_EQ(run.sources(), same.sources());
            auto kept = run.kept();
            auto others = same.kept();
            ASSERT_EQ(kept.rows(), others.rows());
            std::vector<std::size_t> rows(kept.rows());
            std::iota(rows.begin(), rows.end(), std::size_t{0});
            const auto isChecked = [](std::size_t row) { return row % 2 == 1; };
            kept.rowsEdited(rows, isChecked);
            others.rowsEdited(rows, isChecked);
            for (const auto row : rows) {
                EXPECT_EQ(kept.isOnlyInRow(row), others.isOnlyInRow(row));
                EXPECT_EQ(kept.groupOf(row), others.groupOf(row));
            }
        }
    }
}

}  // namespace
}  // namespace dunmora::test
