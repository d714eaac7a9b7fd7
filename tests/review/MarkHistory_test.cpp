#include "review/MarkHistory.h"

#include "engine/ContactsParser.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/People.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

using Rows = std::vector<std::size_t>;

class MarkHistoryTest : public testing::Test {
protected:
    MarkHistoryTest()
    {
        platform_.addressBook = FakeAddressBook(
            {person("1", "Ann"), person("2", "Ann"), person("3", "Ann"), person("4", "Ann")});
        engine_.load();
        engine_.findDupes();
    }

    void toggle(const Rows& rows)
    {
        for (const auto row : rows) {
            auto& contact = *engine_.contacts().find(engine_.duplicates()[row]);
            contact.setObject(!contact.isChecked(), kContactCheck);
        }
        history_.add(rows);
    }

    /// One letter for each row: x for a checked one.
    std::string marks()
    {
        std::string marks;
        for (const auto& uid : engine_.duplicates()) {
            marks += engine_.contacts().find(uid)->isChecked() ? 'x' : '-';
        }
        return marks;
    }

    FakePlatform platform_;
    ContactsParser engine_;
    MarkHistory history_;
};

TEST_F(MarkHistoryTest, IsEmptyAtFirst)
{
    EXPECT_FALSE(history_.canUndo());
    EXPECT_FALSE(history_.canRedo());
    EXPECT_EQ(history_.undo(engine_), Rows());
    EXPECT_EQ(history_.redo(engine_), Rows());
    EXPECT_EQ(marks(), "-xxx");
}

TEST_F(MarkHistoryTest, RevertsAndRepeatsAWholeStep)
{
    toggle({0, 1, 2});
    ASSERT_EQ(marks(), "x--x");

    EXPECT_EQ(history_.undo(engine_), (Rows{0, 1, 2}));
    EXPECT_EQ(marks(), "-xxx");
    EXPECT_FALSE(history_.canUndo());
    EXPECT_TRUE(history_.canRedo());

    EXPECT_EQ(history_.redo(engine_), (Rows{0, 1, 2}));
    EXPECT_EQ(marks(), "x--x");
    EXPECT_TRUE(history_.canUndo());
    EXPECT_FALSE(history_.canRedo());
}

TEST_F(MarkHistoryTest, RevertsTheLastStepFirst)
{
    toggle({1});
    toggle({1, 2});
    ASSERT_EQ(marks(), "-x-x");

    EXPECT_EQ(history_.undo(engine_), (Rows{1, 2}));
    EXPECT_EQ(marks(), "--xx");
    EXPECT_EQ(history_.undo(engine_), Rows{1});
    EXPECT_EQ(marks(), "-xxx");
}

TEST_F(MarkHistoryTest, ForgetsUndoneStepsWhenAnotherOneIsAdded)
{
    toggle({1});
    toggle({2});
    history_.undo(engine_);

    toggle({3});

    EXPECT_FALSE(history_.canRedo());
    ASSERT_EQ(marks(), "--x-");
    history_.undo(engine_);
    history_.undo(engine_);
    EXPECT_EQ(marks(), "-xxx");
    EXPECT_FALSE(history_.canUndo());
}

TEST_F(MarkHistoryTest, IgnoresACommandThatChangedNothing)
{
    toggle({1});
    history_.undo(engine_);

    history_.add({});

    EXPECT_FALSE(history_.canUndo());
    EXPECT_TRUE(history_.canRedo());
}

TEST_F(MarkHistoryTest, ForgetsAllStepsWhenItIsCleared)
{
    toggle({1});
    toggle({2});
    history_.undo(engine_);

    history_.clear();

    EXPECT_FALSE(history_.canUndo());
    EXPECT_FALSE(history_.canRedo());
}

TEST_F(MarkHistoryTest, ForgetsTheOldestStepsWhenTheyTakeTooMuchMemory)
{
    history_ = MarkHistory(4);

    toggle({0, 1});
    toggle({2});
    toggle({3, 0});
    ASSERT_EQ(marks(), "----");

    history_.undo(engine_);
    history_.undo(engine_);
    EXPECT_EQ(marks(), "x-xx");
    EXPECT_FALSE(history_.canUndo());
}

}  // namespace
}  // namespace dunmora::test
