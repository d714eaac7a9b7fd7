#include "tests/adapters/qt/TableWindow.h"

#include <gtest/gtest.h>

#include <QApplication>

#include <algorithm>
#include <optional>
#include <vector>

namespace dunmora::test {

namespace {

constexpr int kLastName = 2;

/// The row that has the keyboard focus.
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

TEST(TableKeyboard, PageKeysMoveByWhatIsInView)
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

TEST(TableKeyboard, HomeAndEndMoveToTheFirstAndTheLastRow)
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

TEST(TableKeyboard, ShiftExtendsTheSelectionFromTheRowThatHomeSelected)
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

TEST(TableKeyboard, SpaceSelectsTheCurrentRowWhenNoneIsSelected)
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

TEST(TableKeyboard, TypingSelectsTheRowThatTheDelegateReturns)
{
    TableWindow shown(6);
    shown.rows.rows[2].texts["fname"] = "zoe";
    shown.rows.rows[4].texts["fname"] = "zora";
    stand(shown, 0);

    shown.press(Qt::Key_Z);
    EXPECT_EQ(shown.selected(), range(2, 2));

    shown.press(Qt::Key_O);
    shown.press(Qt::Key_R);
    EXPECT_EQ(shown.selected(), range(4, 4));
    EXPECT_EQ(shown.widget.currentIndex().column(), kLastName);
}

TEST(TableKeyboard, TypingStartsAfterTheCurrentRow)
{
    TableWindow shown(5);
    stand(shown, 2);

    shown.press(Qt::Key_X);

    EXPECT_EQ(shown.rows.typings, (std::vector<CountedRows::Typing>{{"x", 3}}));
}

TEST(TableKeyboard, TypingFindsOnlyRowsThatTheFilterShows)
{
    TableWindow shown(12);
    shown.rows.rows[3].texts["fname"] = "xaver";
    shown.rows.rows[10].texts["fname"] = "xenia";
    shown.table.beginFiltering();
    shown.type(QStringLiteral("Last1"));
    ASSERT_EQ(shown.rowCount(), 3) << "1, 10 and 11";
    stand(shown, 0);

    shown.press(Qt::Key_X);

    EXPECT_EQ(shown.selected(), range(1, 1));
    EXPECT_EQ(shown.table.selectedRow(), 10U);
}

TEST(TableKeyboard, TypingKeepsTheRowWhenTheDelegateReturnsNone)
{
    TableWindow shown(5);
    stand(shown, 2);

    shown.press(Qt::Key_X);

    EXPECT_EQ(shown.selected(), range(2, 2));
}

TEST(TableKeyboard, TypingAsksNothingWhileTheTableIsDisabled)
{
    TableWindow shown(5);
    stand(shown, 2);
    shown.table.setEnabled(false);

    shown.widget.keyboardSearch(QStringLiteral("F"));

    EXPECT_TRUE(shown.rows.typings.empty());
}

TEST(TableKeyboard, TabLeavesTheTable)
{
    TableWindow shown(5);
    stand(shown, 2);

    shown.press(Qt::Key_Tab);

    EXPECT_EQ(shown.focus(), &shown.button);
    EXPECT_EQ(current(shown), 2);
}

TEST(TableKeyboard, ReportsEveryNewSelection)
{
    TableWindow shown(5);
    stand(shown, 0);
    const auto before = shown.rows.selectionChanges;

    shown.press(Qt::Key_Down);
    EXPECT_EQ(shown.rows.selectionChanges, before + 1);

    shown.press(Qt::Key_Right);
    EXPECT_EQ(shown.rows.selectionChanges, before + 1) << "the same row";
}

TEST(TableKeyboard, HasNoSelectedRowWhenTheFocusedRowIsNotSelected)
{
    TableWindow shown(5);
    EXPECT_EQ(shown.table.selectedRow(), std::nullopt);

    shown.select(1, 2);
    shown.widget.selectionModel()->setCurrentIndex(shown.index(4, 1),
                                                   QItemSelectionModel::NoUpdate);

    EXPECT_EQ(shown.table.selectedRow(), std::nullopt);
}

TEST(TableKeyboard, SelectRowSelectsItAloneScrollsToItAndTakesTheFocus)
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

TEST(TableKeyboard, OpensTheContextMenuAtTheSelectedRow)
{
    TableWindow shown(3);
    std::vector<QPoint> positions;
    shown.widget.setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(&shown.widget, &QWidget::customContextMenuRequested,
                     [&positions](const QPoint& position) { positions.push_back(position); });
    shown.table.selectRow(2);

    shown.press(Qt::Key_F10, Qt::ShiftModifier);
    shown.settle();

    ASSERT_EQ(positions.size(), 1U);
    EXPECT_EQ(shown.widget.rowAt(positions.front().y()), 2);
}

TEST(TableKeyboard, ShowsAllRowsThatBelongTogetherWithTheOneItJumpsTo)
{
    TableWindow shown(400);
    shown.rows.showsGroups = true;
    for (std::size_t row = 300; row < 305; ++row) {
        shown.rows.rows[row].style.group = 1000;
    }
    const auto isInView = [&shown](int row) {
        return shown.widget.viewport()->rect().contains(
            shown.widget.visualRect(shown.index(row, 0)));
    };

    for (const std::size_t row : {300U, 0U, 304U}) {
        shown.table.selectRow(row);
        shown.settle();
        EXPECT_EQ(isInView(300), row != 0);
        EXPECT_EQ(isInView(304), row != 0);
    }
}

TEST(TableKeyboard, ShowsTheRowItJumpsToWhenItsGroupDoesNotFit)
{
    TableWindow shown(400);
    shown.rows.showsGroups = true;
    for (auto& row : shown.rows.rows) {
        row.style.group = 0;
    }

    shown.table.selectRow(200);
    shown.settle();

    EXPECT_TRUE(
        shown.widget.viewport()->rect().contains(shown.widget.visualRect(shown.index(200, 0))));
}

TEST(TableKeyboard, SelectRowIgnoresARowThatDoesNotExist)
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

TEST(TableKeyboard, TheFocusedCellIsVisible)
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
