#include "tests/adapters/qt/TableWindow.h"

#include <gtest/gtest.h>

#include <QApplication>

#include <algorithm>
#include <optional>
#include <vector>

namespace dunmora::test {

namespace {

constexpr int kLastName = 2;

/// The row that the keyboard is on.
int current(const TableWindow& shown)
{
    return shown.widget.currentIndex().row();
}

std::vector<int> range(int first, int last)
{
    std::vector<int> rows;
    for (int row = first; row <= last; ++row) {
        rows.push_back(row);
    }
    return rows;
}

void stand(TableWindow& shown, int row, int column = kLastName)
{
    shown.widget.setFocus();
    shown.widget.setCurrentIndex(shown.index(row, column));
}

TEST(TableKeyboard, ArrowsSelectTheNextRow)
{
    TableWindow shown(5);
    stand(shown, 1);

    shown.press(Qt::Key_Down);
    EXPECT_EQ(shown.selected(), range(2, 2));

    shown.press(Qt::Key_Up);
    shown.press(Qt::Key_Up);
    EXPECT_EQ(shown.selected(), range(0, 0));
    EXPECT_EQ(shown.table.selectedRow(), 0U);
}

TEST(TableKeyboard, PageKeysGoByWhatIsInView)
{
    TableWindow shown(200);
    stand(shown, 0);

    shown.press(Qt::Key_PageDown);
    const int page = current(shown);
    EXPECT_GT(page, 5);
    EXPECT_LT(page, 100);

    shown.press(Qt::Key_PageUp);
    EXPECT_EQ(current(shown), 0);
}

TEST(TableKeyboard, HomeAndEndGoToTheFirstAndTheLastRow)
{
    for (const auto modifiers : {Qt::NoModifier, Qt::ControlModifier, Qt::KeypadModifier}) {
        TableWindow shown(500);
        stand(shown, 100);

        shown.press(Qt::Key_End, modifiers);
        EXPECT_EQ(shown.selected(), range(499, 499));
        EXPECT_EQ(shown.widget.currentIndex(), shown.index(499, kLastName));
        EXPECT_TRUE(shown.widget.viewport()->rect().intersects(
            shown.widget.visualRect(shown.index(499, kLastName))));

        shown.press(Qt::Key_Home, modifiers);
        EXPECT_EQ(shown.selected(), range(0, 0));
    }
}

TEST(TableKeyboard, ShiftExtendsTheSelectionToTheEnds)
{
    TableWindow shown(50);
    stand(shown, 10);

    shown.press(Qt::Key_End, Qt::ShiftModifier);
    EXPECT_EQ(shown.selected(), range(10, 49));
    shown.press(Qt::Key_Home, Qt::ShiftModifier | Qt::ControlModifier);
    EXPECT_EQ(shown.selected(), range(0, 10));
    shown.press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(shown.selected(), range(1, 10));
}

TEST(TableKeyboard, ShiftExtendsTheSelectionFromWhereHomeHasLed)
{
    TableWindow shown(50);
    stand(shown, 30);
    shown.press(Qt::Key_Home);

    shown.press(Qt::Key_Down, Qt::ShiftModifier);
    shown.press(Qt::Key_Down, Qt::ShiftModifier);

    EXPECT_EQ(shown.selected(), range(0, 2));
}

TEST(TableKeyboard, ShiftAndArrowsSelectMoreRows)
{
    TableWindow shown(6);
    stand(shown, 2);

    shown.press(Qt::Key_Down, Qt::ShiftModifier);
    shown.press(Qt::Key_Down, Qt::ShiftModifier);

    EXPECT_EQ(shown.selected(), range(2, 4));
    EXPECT_EQ(shown.table.selectedRow(), 4U);
}

TEST(TableKeyboard, ControlAndASelectAllRows)
{
    TableWindow shown(100);
    stand(shown, 3);

    shown.press(Qt::Key_A, Qt::ControlModifier);

    EXPECT_EQ(shown.selected(), range(0, 99));
}

TEST(TableKeyboard, SpaceSelectsTheRowItIsOnWhereNoneIsSelected)
{
    TableWindow shown(5);
    stand(shown, 3);
    shown.widget.clearSelection();

    shown.press(Qt::Key_Space);
    EXPECT_EQ(shown.selected(), range(3, 3));
    EXPECT_TRUE(shown.rows.edits.empty());

    shown.press(Qt::Key_Space);
    EXPECT_TRUE(shown.rows.rows[3].isChecked);
}

TEST(TableKeyboard, TypingGoesToTheFirstLettersOfAFirstOrALastName)
{
    TableWindow shown(6);
    shown.rows.rows[2].texts["fname"] = "Zo\xC3\xAB";
    shown.rows.rows[4].texts["lname"] = "zoe";
    shown.rows.rows[5].texts["nickname"] = "Zz";
    stand(shown, 0);

    shown.press(Qt::Key_Z);
    EXPECT_EQ(shown.selected(), range(2, 2));

    shown.press(Qt::Key_O);
    shown.press(Qt::Key_E);
    EXPECT_EQ(shown.selected(), range(4, 4));
    EXPECT_EQ(shown.widget.currentIndex().column(), kLastName);
}

TEST(TableKeyboard, TypingTheSameLetterGoesRound)
{
    TableWindow shown(5);
    shown.rows.rows[1].texts["fname"] = "Ann";
    shown.rows.rows[3].texts["lname"] = "Abel";
    stand(shown, 0);

    shown.press(Qt::Key_A);
    EXPECT_EQ(current(shown), 1);
    shown.press(Qt::Key_A);
    EXPECT_EQ(current(shown), 3);
    shown.press(Qt::Key_A);
    EXPECT_EQ(current(shown), 1);
}

TEST(TableKeyboard, TypingWhatNobodyIsCalledStaysWhereItIs)
{
    TableWindow shown(5);
    stand(shown, 2);

    shown.press(Qt::Key_X);

    EXPECT_EQ(shown.selected(), range(2, 2));
}

TEST(TableKeyboard, TabLeavesTheTable)
{
    TableWindow shown(5);
    stand(shown, 2);

    shown.press(Qt::Key_Tab);

    EXPECT_EQ(shown.focus(), &shown.button);
    EXPECT_EQ(current(shown), 2);
}

TEST(TableKeyboard, TellsOfEachOtherSelection)
{
    TableWindow shown(5);
    stand(shown, 0);
    const auto before = shown.rows.selectionChanges;

    shown.press(Qt::Key_Down);
    EXPECT_EQ(shown.rows.selectionChanges, before + 1);

    shown.press(Qt::Key_Right);
    EXPECT_EQ(shown.rows.selectionChanges, before + 1) << "the same row";
}

TEST(TableKeyboard, HasNoSelectedRowWhereTheKeyboardIsOnNone)
{
    TableWindow shown(5);
    EXPECT_EQ(shown.table.selectedRow(), std::nullopt);

    shown.select(1, 2);
    shown.widget.selectionModel()->setCurrentIndex(shown.index(4, 1),
                                                   QItemSelectionModel::NoUpdate);

    EXPECT_EQ(shown.table.selectedRow(), std::nullopt);
}

TEST(TableKeyboard, SelectRowSelectsItAloneInViewAndTakesTheKeyboard)
{
    TableWindow shown(1'000);
    shown.select(1, 5);
    shown.button.setFocus();

    shown.table.selectRow(700);

    EXPECT_EQ(shown.selected(), range(700, 700));
    EXPECT_EQ(shown.table.selectedRow(), 700U);
    EXPECT_TRUE(
        shown.widget.viewport()->rect().contains(shown.widget.visualRect(shown.index(700, 1))));
    EXPECT_EQ(shown.focus(), &shown.widget);
}

TEST(TableKeyboard, SelectRowLeavesARowThatThereIsNotAlone)
{
    TableWindow shown(3);
    shown.select(1, 1);

    shown.table.selectRow(3);

    EXPECT_EQ(shown.selected(), range(1, 1));
}

TEST(TableKeyboard, ReloadingSelectsNothing)
{
    TableWindow shown(3);
    shown.select(0, 2);
    const auto before = shown.rows.selectionChanges;

    shown.table.reloadData();

    EXPECT_TRUE(shown.selected().empty());
    EXPECT_EQ(shown.rows.selectionChanges, before + 1);
}

TEST(TableKeyboard, TheCellThatHasTheKeyboardIsSeen)
{
    TableWindow shown(3);
    QApplication::setActiveWindow(&shown.window);
    shown.table.selectRow(1);
    TableWindow::settle();
    shown.draw();
    const auto focused = shown.drawn;

    shown.button.setFocus();
    TableWindow::settle();
    shown.draw();

    const auto cell = shown.widget.visualRect(shown.index(1, 0));
    EXPECT_NE(shown.drawn.copy(cell), focused.copy(cell));
}

}  // namespace

}  // namespace dunmora::test
