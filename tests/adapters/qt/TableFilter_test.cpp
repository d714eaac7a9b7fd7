#include "tests/adapters/qt/TableWindow.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace dunmora::test {

namespace {

constexpr int kFirstName = 1;

std::vector<std::string> firstNames(const TableWindow& shown)
{
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(shown.rowCount()));
    for (int row = 0; row < shown.rowCount(); ++row) {
        names.push_back(shown.text(row, kFirstName).toStdString());
    }
    return names;
}

using Names = std::vector<std::string>;

TEST(TableFilter, IsClosedUntilItIsOpened)
{
    TableWindow shown(3);
    EXPECT_TRUE(shown.bar.isHidden());

    shown.table.beginFiltering();

    EXPECT_FALSE(shown.bar.isHidden());
    EXPECT_EQ(shown.focus(), &shown.line);
    EXPECT_EQ(shown.countText(), QStringLiteral("3/3"));
}

TEST(TableFilter, SelectsItsTextWhenItIsOpenedAgain)
{
    TableWindow shown(3);
    shown.table.beginFiltering();
    shown.type(QStringLiteral("First"));
    shown.widget.setFocus();

    shown.table.beginFiltering();

    EXPECT_EQ(shown.line.selectedText(), QStringLiteral("First"));
    EXPECT_EQ(shown.focus(), &shown.line);
}

TEST(TableFilter, HidesRowsThatDoNotContainTheText)
{
    TableWindow shown(120);
    shown.table.beginFiltering();

    shown.type(QStringLiteral("First11"));
    EXPECT_EQ(shown.rowCount(), 11);
    EXPECT_EQ(shown.countText(), QStringLiteral("11/120"));

    shown.type(QStringLiteral("First119"));
    EXPECT_EQ(firstNames(shown), Names{"First119"});
    EXPECT_EQ(shown.countText(), QStringLiteral("1/120"));

    shown.type(QStringLiteral("555-0042"));
    EXPECT_EQ(firstNames(shown), Names{"First42"});

    shown.type(QString());
    EXPECT_EQ(shown.rowCount(), 120);
    EXPECT_EQ(shown.countText(), QStringLiteral("120/120"));
}

TEST(TableFilter, SearchesOnlyTheLastMatchesWhenMoreIsTyped)
{
    TableWindow shown(120);
    shown.table.beginFiltering();
    shown.type(QStringLiteral("First11"));
    shown.rows.filterQuestions = 0;

    shown.type(QStringLiteral("First119"));
    EXPECT_EQ(shown.rows.filterQuestions, 11U);

    shown.type(QStringLiteral("First1"));
    EXPECT_EQ(shown.rows.filterQuestions, 131U);
}

TEST(TableFilter, ShowsEveryRowWithoutADelegate)
{
    TableWindow shown(3);
    shown.table.setDataSource(&shown.rows, nullptr);
    shown.table.reloadData();
    shown.table.beginFiltering();

    shown.type(QStringLiteral("nobody"));

    EXPECT_EQ(shown.rowCount(), 3);
    EXPECT_EQ(shown.countText(), QString());
}

TEST(TableFilter, CountsNoRowWhenNothingMatches)
{
    TableWindow shown(3);
    shown.table.beginFiltering();

    shown.type(QStringLiteral("nobody"));

    EXPECT_EQ(shown.rowCount(), 0);
    EXPECT_EQ(shown.countText(), QStringLiteral("0/3"));
}

TEST(TableFilter, ChangesNoCheckMark)
{
    TableWindow shown(10);
    shown.table.beginFiltering();

    shown.type(QStringLiteral("First1"));
    shown.table.endFiltering();

    EXPECT_TRUE(shown.rows.edits.empty());
}

TEST(TableFilter, EditsTheRowsThatAreShown)
{
    TableWindow shown(20);
    shown.table.beginFiltering();
    shown.type(QStringLiteral("First1"));
    ASSERT_EQ(firstNames(shown).at(3), "First12");

    shown.click(shown.checkBox(3));
    shown.widget.selectAll();
    shown.table.editSelectedRows("check", CheckState::On);

    EXPECT_EQ(shown.rows.editedRows, (std::vector<std::vector<std::size_t>>{
                                         {12}, {1, 10, 11, 13, 14, 15, 16, 17, 18, 19}}));
}

TEST(TableFilter, EditsAllRowsThatAreShown)
{
    TableWindow shown(20);
    shown.rows.rows[10].isChecked = true;
    shown.table.editShownRows("check", CheckState::Off);
    EXPECT_EQ(shown.rows.editedRows, (std::vector<std::vector<std::size_t>>{{10}}));

    shown.table.beginFiltering();
    shown.type(QStringLiteral("First1"));
    shown.table.editShownRows("check", CheckState::On);

    EXPECT_EQ(shown.rows.editedRows.back(),
              (std::vector<std::size_t>{1, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19}));
    EXPECT_TRUE(shown.table.showsRow(10));
    EXPECT_FALSE(shown.table.showsRow(9));
    EXPECT_FALSE(shown.table.showsRow(20));
}

/// Rows 4 to 7 and 10 and 11 are found by the text "Five" and shown with their groups.
class TableGroupFilter : public testing::Test {
protected:
    TableGroupFilter()
    {
        shown.rows.showsGroups = true;
        for (const std::size_t row : {5U, 6U, 10U}) {
            shown.rows.rows[row].texts["nickname"] = "Five";
        }
        shown.table.beginFiltering();
        shown.type(QStringLiteral("Five"));
    }

    TableWindow shown{20};
};

TEST_F(TableGroupFilter, ShowsTheWholeGroupOfARow)
{
    EXPECT_EQ(firstNames(shown),
              (Names{"First4", "First5", "First6", "First7", "First10", "First11"}));
    EXPECT_EQ(shown.countText(), QStringLiteral("3/20"));
    EXPECT_TRUE(shown.table.showsRow(4));

    shown.type(QString());
    EXPECT_EQ(shown.rowCount(), 20);
    EXPECT_EQ(shown.countText(), QStringLiteral("20/20"));
}

TEST_F(TableGroupFilter, EditsOnlyTheRowsThatItFound)
{
    shown.table.editShownRows("check", CheckState::On);
    EXPECT_EQ(shown.rows.editedRows.back(), (std::vector<std::size_t>{5, 6, 10}));

    shown.widget.selectAll();
    shown.table.editSelectedRows("check", CheckState::Off);
    EXPECT_EQ(shown.rows.editedRows.back(), (std::vector<std::size_t>{5, 6, 10}));

    shown.press(Qt::Key_Space);
    EXPECT_EQ(shown.rows.editedRows.back(), (std::vector<std::size_t>{5, 6, 10}));
}

TEST_F(TableGroupFilter, EditsAnotherMemberOfAGroupWhenItIsSelectedAlone)
{
    shown.select(0, 0);
    shown.press(Qt::Key_Space);
    EXPECT_EQ(shown.rows.editedRows.back(), (std::vector<std::size_t>{4}));

    shown.click(shown.checkBox(3));
    EXPECT_EQ(shown.rows.editedRows.back(), (std::vector<std::size_t>{7}));
}

TEST_F(TableGroupFilter, SearchesOnlyTheRowsThatItFoundBefore)
{
    shown.rows.filterQuestions = 0;
    shown.rows.rows[10].texts["nickname"] = "Five more";
    shown.type(QStringLiteral("Five m"));

    EXPECT_EQ(firstNames(shown), (Names{"First10", "First11"}));
    EXPECT_EQ(shown.rows.filterQuestions, 3U);
}

TEST(TableFilter, DeselectsTheRowsThatItHides)
{
    TableWindow shown(30);
    shown.select(0, 12);
    shown.widget.selectionModel()->setCurrentIndex(shown.index(5, 1),
                                                   QItemSelectionModel::NoUpdate);
    const auto changes = shown.rows.selectionChanges;
    shown.table.beginFiltering();

    shown.type(QStringLiteral("First1"));
    EXPECT_EQ(shown.selected(), (std::vector<int>{0, 1, 2, 3})) << "1, 10, 11 and 12";
    EXPECT_EQ(shown.rows.selectionChanges, changes + 1);
    EXPECT_EQ(shown.table.selectedRow(), 10U) << "in the place of 5";

    shown.table.endFiltering();
    EXPECT_EQ(shown.selected(), (std::vector<int>{1, 10, 11, 12}));
    EXPECT_EQ(shown.rows.selectionChanges, changes + 1) << "the same rows";
}

TEST(TableFilter, ClosesWithEscape)
{
    TableWindow shown(30);
    shown.table.beginFiltering();
    shown.type(QStringLiteral("First1"));

    QTest::keyClick(&shown.line, Qt::Key_Escape);

    EXPECT_TRUE(shown.bar.isHidden());
    EXPECT_EQ(shown.line.text(), QString());
    EXPECT_EQ(shown.rowCount(), 30);
    EXPECT_EQ(shown.focus(), &shown.widget);
}

TEST(TableFilter, ClosesWithItsButton)
{
    TableWindow shown(30);
    shown.table.beginFiltering();
    shown.type(QStringLiteral("First1"));

    shown.bar.findChild<QToolButton*>()->click();

    EXPECT_TRUE(shown.bar.isHidden());
    EXPECT_EQ(shown.rowCount(), 30);
}

TEST(TableFilter, LeavesTheFocusOfAnotherWidget)
{
    TableWindow shown(30);
    shown.table.beginFiltering();
    shown.type(QStringLiteral("First1"));
    shown.button.setFocus();

    shown.table.endFiltering();

    EXPECT_EQ(shown.rowCount(), 30);
    EXPECT_EQ(shown.focus(), &shown.button);
}

TEST(TableFilter, MovesToTheRowsWithDownAndEnter)
{
    for (const auto key : {Qt::Key_Down, Qt::Key_Return, Qt::Key_Enter}) {
        TableWindow shown(30);
        shown.table.beginFiltering();
        shown.type(QStringLiteral("First1"));

        QTest::keyClick(&shown.line, key);

        EXPECT_EQ(shown.focus(), &shown.widget);
        EXPECT_EQ(shown.table.selectedRow(), 1U);
        EXPECT_FALSE(shown.bar.isHidden());
        EXPECT_EQ(shown.rowCount(), 11);
    }
}

TEST(TableFilter, StaysWhenTheTableIsReloaded)
{
    TableWindow shown(30);
    shown.table.beginFiltering();
    shown.type(QStringLiteral("First1"));
    for (std::size_t person = 30; person < 120; ++person) {
        shown.add(person);
    }

    shown.table.reloadData();
    TableWindow::settle();

    EXPECT_EQ(shown.rowCount(), 31);
    EXPECT_EQ(shown.countText(), QStringLiteral("31/120"));
}

TEST(TableFilter, CountsNoRowsWhileThereAreNone)
{
    TableWindow shown(30);
    shown.table.beginFiltering();
    shown.type(QStringLiteral("First1"));
    shown.rows.rows.clear();

    shown.table.reloadData();

    EXPECT_EQ(shown.countText(), QStringLiteral("0/0"));
}

TEST(TableFilter, CountsTheRowsOfADisabledTable)
{
    TableWindow shown(30);
    shown.table.beginFiltering();
    shown.table.setEnabled(false);
    shown.rows.rows.resize(20);

    shown.table.reloadData();

    EXPECT_EQ(shown.countText(), QStringLiteral("20/20"));
}

TEST(TableFilter, ClosesForARowThatItHides)
{
    TableWindow shown(30);
    shown.table.beginFiltering();
    shown.type(QStringLiteral("First1"));

    shown.table.selectRow(11);
    EXPECT_FALSE(shown.bar.isHidden());
    EXPECT_EQ(shown.table.selectedRow(), 11U);

    shown.table.selectRow(5);
    EXPECT_TRUE(shown.bar.isHidden());
    EXPECT_EQ(shown.rowCount(), 30);
    EXPECT_EQ(shown.selected(), std::vector<int>{5});
}

TEST(TableFilter, IsDisabledAndEnabledWithTheTableAndKeepsItsText)
{
    TableWindow shown(30);
    shown.table.beginFiltering();
    shown.type(QStringLiteral("First1"));
    shown.draw();

    shown.table.setEnabled(false);
    EXPECT_FALSE(shown.line.isEnabled());
    EXPECT_EQ(shown.rowCount(), 11);

    shown.table.setEnabled(true);
    shown.table.reloadData();
    EXPECT_TRUE(shown.line.isEnabled());
    EXPECT_EQ(shown.focus(), &shown.line);
    EXPECT_EQ(shown.rowCount(), 11);
}

TEST(TableFilter, ClosesOnADisabledTableWithoutAskingIt)
{
    TableWindow shown(30);
    shown.draw();
    shown.table.beginFiltering();
    shown.type(QStringLiteral("First1"));
    shown.table.setEnabled(false);
    const auto questions = shown.rows.questions();

    shown.table.endFiltering();
    shown.draw();

    EXPECT_EQ(shown.rowCount(), 30);
    EXPECT_EQ(shown.text(2, kFirstName), QStringLiteral("First2"));
    EXPECT_EQ(shown.rows.questions(), questions);
}

TEST(TableFilter, LosesNoKeyInABigTable)
{
    TableWindow shown(60'000);
    shown.table.beginFiltering();

    // The event loop does not run between the keys.
    for (const char key : std::string_view("First59999")) {
        QTest::keyClick(&shown.line, key);
    }
    QTest::keyClick(&shown.line, Qt::Key_Return);

    EXPECT_EQ(firstNames(shown), Names{"First59999"});
    EXPECT_EQ(shown.table.selectedRow(), 59'999U);
}

TEST(TableFilter, FindsTheSameInManyTurnsOfTheEventLoop)
{
    TableWindow shown(60'000);
    shown.table.beginFiltering();
    shown.line.setText(QStringLiteral("77"));
    for (int turn = 0; turn < 10'000 && shown.rowCount() == 60'000; ++turn) {
        QCoreApplication::processEvents();
    }

    int expected = 0;
    for (std::size_t person = 0; person < 60'000; ++person) {
        expected += std::to_string(person).find("77") != std::string::npos ? 1 : 0;
    }
    // The telephone number contains the same digits as the name.
    EXPECT_EQ(shown.rowCount(), expected);
}

TEST(TableFilter, StopsSearchingWhenTheTableIsDisabled)
{
    TableWindow shown(60'000);
    shown.table.beginFiltering();
    shown.line.setText(QStringLiteral("77"));
    ASSERT_EQ(shown.rowCount(), 60'000) << "the search takes more than one turn";

    shown.table.setEnabled(false);
    const auto questions = shown.rows.questions();
    TableWindow::settle();
    EXPECT_EQ(shown.rows.questions(), questions);

    shown.table.setEnabled(true);
    shown.table.reloadData();
    for (int turn = 0; turn < 10'000 && shown.rowCount() == 60'000; ++turn) {
        QCoreApplication::processEvents();
    }
    EXPECT_LT(shown.rowCount(), 60'000);
}

void fillEverySecondRow(TableWindow& shown)
{
    for (std::size_t i = 0; i < shown.rows.rows.size(); i += 2) {
        shown.rows.rows[i].texts["nickname"] = "even";
    }
}

void selectEveryFound(TableWindow& shown)
{
    shown.table.beginFiltering();
    shown.type(QStringLiteral("even"));
    QTest::keyClick(&shown.line, Qt::Key_Return);
    shown.widget.selectAll();
    shown.table.endFiltering();
}

TEST(TableFilter, KeepsASelectionOfSeparateRows)
{
    TableWindow shown(6'000);
    fillEverySecondRow(shown);

    selectEveryFound(shown);
    shown.table.editSelectedRows("check", CheckState::On);

    ASSERT_EQ(shown.rows.editedRows.size(), 1U);
    EXPECT_EQ(shown.rows.editedRows[0].size(), 3'000U);
}

TEST(TableFilter, AppliesTheDelegatesOwnFilterWithAndWithoutATypedText)
{
    TableWindow shown(20);
    shown.rows.filteredName = "First1";

    shown.table.refilter();
    shown.settle();
    EXPECT_EQ(shown.rowCount(), 11);

    shown.table.reloadData();
    shown.settle();
    EXPECT_EQ(shown.rowCount(), 11);

    shown.table.beginFiltering();
    shown.type(QStringLiteral("First2"));
    EXPECT_EQ(shown.rowCount(), 1);

    shown.table.endFiltering();
    shown.settle();
    EXPECT_EQ(shown.rowCount(), 11);

    shown.rows.filteredName.clear();
    shown.table.refilter();
    EXPECT_EQ(shown.rowCount(), 20);
}

TEST(TableFilter, ShowsARowThatTheDelegatesOwnFilterHidesToSelectIt)
{
    TableWindow shown(20);
    shown.rows.filteredName = "First1";
    shown.table.refilter();
    shown.settle();

    shown.table.selectRow(5);

    EXPECT_EQ(shown.table.selectedRow(), 5U);
    EXPECT_EQ(shown.rowCount(), 20);
}

TEST(TableFilter, DropsASelectionTooScatteredToDraw)
{
    TableWindow shown(20'000);
    fillEverySecondRow(shown);

    selectEveryFound(shown);
    shown.table.editSelectedRows("check", CheckState::On);

    // Rows that are not shown as selected must not be edited.
    EXPECT_FALSE(shown.widget.selectionModel()->hasSelection());
    EXPECT_TRUE(shown.rows.editedRows.empty() || shown.rows.editedRows[0].empty());
}

}  // namespace

}  // namespace dunmora::test
