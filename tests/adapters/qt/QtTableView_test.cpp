#include "adapters/qt/QtTableView.h"

#include "adapters/qt/DateFormat.h"
#include "tests/adapters/qt/TableWindow.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QToolTip>

#include <chrono>
#include <cstddef>
#include <optional>
#include <thread>
#include <vector>

namespace dunmora::test {

namespace {

constexpr int kFirstName = 1;
constexpr int kNickname = 3;
constexpr int kHome = 4;
constexpr int kModified = 7;

using Rows = std::vector<std::size_t>;

TEST(QtTableView, ShowsTheDataSourcesValues)
{
    TableWindow shown(3);

    EXPECT_EQ(shown.rowCount(), 3);
    EXPECT_EQ(shown.text(1, kFirstName), QStringLiteral("First1"));
    EXPECT_EQ(shown.text(1, kNickname), QString());
    EXPECT_FALSE(shown.isChecked(1));

    shown.rows.rows[1].texts["fname"] = "Ann";
    shown.rows.rows[1].isChecked = true;
    EXPECT_EQ(shown.text(1, kFirstName), QStringLiteral("Ann"));
    EXPECT_TRUE(shown.isChecked(1));
}

TEST(QtTableView, ShowsATimeInTheUsersLocaleAndZone)
{
    TableWindow shown(1);
    const std::chrono::sys_seconds time{std::chrono::seconds(1'700'000'000)};
    shown.rows.rows[0].modified = time;

    EXPECT_EQ(shown.text(0, kModified), DateFormat().text(time));
    EXPECT_TRUE(shown.text(0, kModified).contains(QStringLiteral("/2023")));
}

TEST(QtTableView, ShowsAnyTextAsOneLine)
{
    TableWindow shown(1);
    shown.rows.rows[0].texts["fname"] = "A\nB\xFF<b>";

    shown.draw();

    EXPECT_EQ(shown.text(0, kFirstName), QStringLiteral(u"A B\uFFFD<b>"));
}

TEST(QtTableView, AsksForTheRowsInViewOnly)
{
    TableWindow shown(10'000);
    shown.rows.cellQuestions = 0;
    shown.rows.styleQuestions = 0;

    shown.draw();

    const int rows = shown.widget.viewport()->height() / shown.widget.rowHeight(0) + 2;
    const auto visible = static_cast<std::size_t>(rows);
    EXPECT_GT(shown.rows.cellQuestions, visible);
    EXPECT_LE(shown.rows.cellQuestions, visible * 8);
    EXPECT_LE(shown.rows.styleQuestions, visible + 1);
}

TEST(QtTableView, ChangesTheRowOfACheckBoxThatIsClicked)
{
    TableWindow shown(4);
    shown.rows.onRowsEdited = [&shown] { EXPECT_TRUE(shown.rows.rows[2].isChecked); };

    shown.click(shown.checkBox(2));

    EXPECT_EQ(shown.rows.edits, (std::vector<CountedRows::Edit>{{2, "check", true}}));
    EXPECT_EQ(shown.rows.editedRows, std::vector<Rows>{{2}});
    EXPECT_TRUE(shown.isChecked(2));

    shown.rows.onRowsEdited = [] {};
    shown.click(shown.checkBox(2));
    EXPECT_FALSE(shown.isChecked(2));
    EXPECT_EQ(shown.rows.edits.back(), (CountedRows::Edit{2, "check", false}));
}

TEST(QtTableView, KeepsTheSelectionWhenACheckBoxIsClicked)
{
    TableWindow shown(6);
    shown.select(0, 1);
    const auto changes = shown.rows.selectionChanges;

    shown.click(shown.checkBox(4));
    shown.click(shown.checkBox(0));

    EXPECT_EQ(shown.rows.editedRows, (std::vector<Rows>{{4}, {0}}));
    EXPECT_EQ(shown.selected(), (std::vector<int>{0, 1}));
    EXPECT_EQ(shown.rows.selectionChanges, changes);
}

TEST(QtTableView, TogglesTwiceForADoubleClick)
{
    TableWindow shown(2);
    const auto position = shown.checkBox(1);

    shown.click(position);
    QTest::mouseDClick(shown.widget.viewport(), Qt::LeftButton, Qt::NoModifier, position);
    QTest::mouseRelease(shown.widget.viewport(), Qt::LeftButton, Qt::NoModifier, position);

    EXPECT_EQ(shown.rows.edits.size(), 2U);
    EXPECT_FALSE(shown.isChecked(1));
}

TEST(QtTableView, EditsNothingForAClickElsewhere)
{
    TableWindow shown(3);
    const auto cell = shown.widget.visualRect(shown.index(1, kFirstName)).center();
    const auto beside = shown.widget.visualRect(shown.index(1, 0));

    shown.click(cell);
    QTest::mouseDClick(shown.widget.viewport(), Qt::LeftButton, Qt::NoModifier, cell);
    shown.click(QPoint(beside.right() - 2, beside.center().y()));
    QTest::mousePress(shown.widget.viewport(), Qt::LeftButton, Qt::NoModifier, shown.checkBox(0));
    QTest::mouseRelease(shown.widget.viewport(), Qt::LeftButton, Qt::NoModifier, cell);

    EXPECT_TRUE(shown.rows.edits.empty());
}

TEST(QtTableView, SelectsWithAModifierOnACheckBox)
{
    TableWindow shown(4);
    shown.select(0, 0);

    shown.click(shown.checkBox(2), Qt::ControlModifier);

    EXPECT_EQ(shown.selected(), (std::vector<int>{0, 2}));
    EXPECT_TRUE(shown.rows.edits.empty());
}

TEST(QtTableView, ChecksAllSelectedRowsWithSpaceWhenAnyIsUnchecked)
{
    TableWindow shown(5);
    shown.rows.rows[2].isChecked = true;
    shown.select(1, 3);

    shown.press(Qt::Key_Space);

    EXPECT_EQ(shown.rows.edits,
              (std::vector<CountedRows::Edit>{{1, "check", true}, {3, "check", true}}));
    EXPECT_EQ(shown.rows.editedRows, (std::vector<Rows>{{1, 3}}));
    EXPECT_EQ(shown.rows.calls.back(), "rowsEdited");
}

TEST(QtTableView, UnchecksAllSelectedRowsWithSpaceWhenAllAreChecked)
{
    TableWindow shown(3);
    shown.rows.rows[0].isChecked = true;
    shown.rows.rows[1].isChecked = true;
    shown.select(0, 1);

    shown.press(Qt::Key_Space);

    EXPECT_EQ(shown.rows.editedRows, (std::vector<Rows>{{0, 1}}));
    EXPECT_FALSE(shown.rows.rows[0].isChecked);
    EXPECT_FALSE(shown.rows.rows[1].isChecked);
    EXPECT_EQ(shown.selected(), (std::vector<int>{0, 1}));
}

TEST(QtTableView, EditsOnlySelectedRowsThatDoNotShowTheState)
{
    TableWindow shown(4);
    shown.rows.rows[1].isChecked = true;
    shown.select(0, 2);

    shown.table.editSelectedRows("check", CheckState::On);
    EXPECT_EQ(shown.rows.editedRows, (std::vector<Rows>{{0, 2}}));

    shown.table.editSelectedRows("check", CheckState::On);
    EXPECT_EQ(shown.rows.editedRows.size(), 1U) << "nothing had to change";

    shown.table.editSelectedRows("check", CheckState::Off);
    EXPECT_EQ(shown.rows.editedRows.back(), (Rows{0, 1, 2}));
}

TEST(QtTableView, RedrawsAfterAnEdit)
{
    TableWindow shown(3);
    shown.draw();
    const auto before = shown.drawn;

    shown.click(shown.checkBox(1));
    shown.draw();

    EXPECT_NE(shown.drawn, before);
}

TEST(QtTableView, AsksNothingWhileItIsDisabled)
{
    TableWindow shown(1'000);
    shown.draw();
    shown.table.beginFiltering();
    shown.table.setEnabled(false);
    const auto questions = shown.rows.questions();
    const auto countQuestions = shown.rows.countQuestions;

    shown.draw();
    shown.widget.verticalScrollBar()->setValue(shown.widget.verticalScrollBar()->maximum() / 2);
    shown.draw();
    shown.window.resize(700, 900);
    TableWindow::settle();
    shown.draw();
    shown.widget.setFont(QFont(shown.widget.font().family(), 20));
    shown.widget.resizeColumnToContents(kFirstName);
    shown.draw();
    for (const int row : {0, 500, 999}) {
        for (int column = 0; column <= kModified; ++column) {
            shown.accessibleName(row, column);
            shown.accessibleCell(row, column).state();
        }
    }
    shown.type(QStringLiteral("First1"));
    shown.table.setNeedsDisplay();
    TableWindow::settle();
    shown.select(0, 3);
    shown.table.editSelectedRows("check", CheckState::On);
    shown.press(Qt::Key_Space);
    shown.widget.keyboardSearch(QStringLiteral("First9"));
    shown.table.selectRow(7);
    shown.table.endFiltering();
    shown.table.beginFiltering();
    shown.draw();

    EXPECT_EQ(shown.rows.questions(), questions);
    EXPECT_EQ(shown.rows.countQuestions, countQuestions);
    EXPECT_TRUE(shown.rows.edits.empty());
}

TEST(QtTableView, KeepsWhatItHasDrawnWhileItIsDisabled)
{
    TableWindow shown(1'000);
    shown.rows.rows[2].isChecked = true;
    shown.rows.rows[2].style.warning = {RowStyle::Warning::Sign::Loss, "Lost"};
    shown.draw();
    const auto name = shown.accessibleName(2, 0);
    shown.table.setEnabled(false);
    shown.rows.rows.clear();

    EXPECT_EQ(shown.text(2, kFirstName), QStringLiteral("First2"));
    EXPECT_TRUE(shown.isChecked(2));
    EXPECT_EQ(shown.accessibleName(2, 0), name);
    EXPECT_EQ(shown.index(2, kHome).data(Qt::AccessibleDescriptionRole).toString(),
              QStringLiteral("Lost"));
    shown.draw();
    const auto there = shown.drawn;
    shown.widget.scrollToBottom();
    shown.draw();
    shown.widget.scrollToTop();
    shown.draw();
    EXPECT_EQ(shown.drawn, there);
}

TEST(QtTableView, LeavesARowThatItHasNotDrawnBlankWhileItIsDisabled)
{
    TableWindow shown(1'000);
    shown.draw();
    shown.table.setEnabled(false);

    EXPECT_EQ(shown.text(900, kFirstName), QString());
    EXPECT_FALSE(shown.index(900, 0).data(Qt::CheckStateRole).isValid());
    EXPECT_EQ(shown.accessibleName(900, kHome), QStringLiteral("Home=blank"));
    EXPECT_FALSE(shown.accessibleCell(900, 0).state().checked);
}

TEST(QtTableView, AsksAfterAnEditOnlyAboutRowsInView)
{
    TableWindow shown(1'000);
    shown.draw();
    const auto first = shown.rows.questions();
    for (int row = 0; row < 1'000; row += 5) {
        shown.widget.scrollTo(shown.index(row, 0));
        shown.draw();
    }
    shown.widget.scrollToTop();
    shown.draw();
    shown.select(0, 0);
    const auto questions = shown.rows.questions();

    shown.table.editSelectedRows("check", CheckState::On);
    shown.draw();

    EXPECT_LT(shown.rows.questions() - questions, 4 * first);
}

TEST(QtTableView, KeepsTheMarksOfRowsThatWereEditedOutOfView)
{
    TableWindow shown(1'000);
    shown.draw();
    shown.widget.scrollToBottom();
    shown.draw();
    shown.select(0, 0);
    shown.rows.onRowsEdited = [&shown] {
        shown.rows.rows[1].style.warning = {RowStyle::Warning::Sign::Loss, "Lost"};
    };

    shown.table.editSelectedRows("check", CheckState::On);
    shown.table.setEnabled(false);

    EXPECT_TRUE(shown.isChecked(0));
    EXPECT_EQ(shown.index(1, 1).data(Qt::AccessibleDescriptionRole).toString(),
              QStringLiteral("Lost"));
}

TEST(QtTableView, StaysTheSameUntilItIsEnabledAndReloaded)
{
    TableWindow shown(3);
    shown.draw();
    shown.table.setEnabled(false);
    shown.rows.rows[0].texts["fname"] = "Other";
    shown.table.setEnabled(true);

    shown.draw();
    shown.click(shown.checkBox(0));
    EXPECT_EQ(shown.text(0, kFirstName), QStringLiteral("First0"));
    EXPECT_TRUE(shown.rows.edits.empty());

    shown.table.reloadData();
    EXPECT_EQ(shown.text(0, kFirstName), QStringLiteral("Other"));
    shown.click(shown.checkBox(0));
    EXPECT_EQ(shown.rows.edits.size(), 1U);
}

TEST(QtTableView, ShowsBlankRowsWhenItIsReloadedWhileDisabled)
{
    TableWindow shown(3);
    shown.draw();
    shown.table.setEnabled(false);
    const auto questions = shown.rows.questions();
    shown.rows.rows.resize(2);

    shown.table.reloadData();
    shown.draw();

    EXPECT_EQ(shown.rowCount(), 2);
    EXPECT_EQ(shown.text(0, kFirstName), QString());
    EXPECT_EQ(shown.rows.questions(), questions);
}

TEST(QtTableView, AsksNothingWhileItsRowsAreGone)
{
    TableWindow shown(50);
    shown.table.beginFiltering();
    shown.draw();
    auto people = std::exchange(shown.rows.rows, {});
    shown.table.reloadData();
    const auto questions = shown.rows.questions();

    shown.draw();
    shown.type(QStringLiteral("First1"));
    shown.press(Qt::Key_Home);
    shown.press(Qt::Key_End);
    shown.press(Qt::Key_Space);
    shown.press(Qt::Key_F);
    shown.press(Qt::Key_PageDown);
    shown.window.resize(800, 600);
    shown.table.selectRow(0);
    shown.table.editSelectedRows("check", CheckState::On);
    QTest::keyClick(&shown.line, Qt::Key_Down);
    shown.draw();

    EXPECT_EQ(shown.rows.questions(), questions);
    EXPECT_EQ(shown.rowCount(), 0);
    EXPECT_EQ(shown.table.selectedRow(), std::nullopt);
}

TEST(QtTableView, ShowsNothingWithoutADataSource)
{
    TableWindow shown(3);

    shown.table.setDataSource(nullptr, nullptr);
    shown.draw();
    shown.table.reloadData();
    shown.draw();

    EXPECT_EQ(shown.rowCount(), 0);
}

TEST(QtTableView, ShowsRowsWithoutADelegate)
{
    TableWindow shown(3);

    shown.table.setDataSource(&shown.rows, nullptr);
    shown.table.reloadData();
    shown.draw();
    shown.click(shown.checkBox(1));

    EXPECT_TRUE(shown.rows.rows[1].isChecked);
    EXPECT_TRUE(shown.rows.editedRows.empty());
}

TEST(QtTableView, RestoresTheFocusWhenItIsEnabled)
{
    TableWindow shown(3);
    shown.widget.setFocus();
    shown.table.setEnabled(false);
    EXPECT_FALSE(shown.widget.isEnabled());

    shown.table.setEnabled(true);

    EXPECT_EQ(shown.focus(), &shown.widget);
}

TEST(QtTableView, LeavesTheFocusWhereTheUserHasMovedIt)
{
    TableWindow shown(3);
    QPushButton other(&shown.window);
    other.show();
    shown.widget.setFocus();
    shown.table.setEnabled(false);
    QWidget* elsewhere = shown.focus() == &other ? static_cast<QWidget*>(&shown.button) : &other;
    elsewhere->setFocus();

    shown.table.setEnabled(true);

    EXPECT_EQ(shown.focus(), elsewhere);
}

TEST(QtTableView, TakesTheFocusWhenNothingHasIt)
{
    TableWindow shown(4);
    shown.table.setHidden(true);
    shown.table.setEnabled(false);
    shown.focus()->clearFocus();
    ASSERT_EQ(shown.focus(), nullptr);

    shown.table.setHidden(false);
    EXPECT_EQ(shown.focus(), nullptr);
    shown.table.setEnabled(true);

    EXPECT_EQ(shown.focus(), &shown.widget);
}

TEST(QtTableView, TakesTheFocusThatADialogLeftWhileItWasHidden)
{
    TableWindow shown(3);
    QWidget dialog;
    const auto activate = [](QWidget& window) {
        window.activateWindow();
        TableWindow::settle();
    };
    shown.button.hide();
    dialog.show();
    activate(shown.window);
    shown.widget.setFocus();
    shown.table.setHidden(true);
    activate(dialog);
    activate(shown.window);

    shown.table.setHidden(false);

    EXPECT_EQ(QApplication::focusWidget(), &shown.widget);
}

TEST(QtTableView, LeavesTheFocusOfAnotherWidgetWhenItIsShown)
{
    TableWindow shown(4);
    shown.table.setHidden(true);
    shown.button.setFocus();

    shown.table.setHidden(false);

    EXPECT_EQ(shown.focus(), &shown.button);
}

TEST(QtTableView, DrawsOnceForManyRequestsFromAnyThread)
{
    TableWindow shown(3);
    shown.draw();
    shown.rows.rows[0].isChecked = true;
    const auto questions = shown.rows.questions();

    std::thread([&shown] {
        for (int i = 0; i < 1'000; ++i) {
            shown.table.setNeedsDisplay();
        }
    }).join();
    EXPECT_EQ(shown.rows.questions(), questions);
    TableWindow::settle();

    EXPECT_GT(shown.rows.questions(), questions);
    EXPECT_LE(shown.rows.questions(), questions + 2 * shown.rows.rows.size() * 9);
    shown.table.setEnabled(false);
    EXPECT_TRUE(shown.isChecked(0));
}

TEST(QtTableView, HidesItsFilterBarTogetherWithItself)
{
    TableWindow shown(3);
    shown.table.beginFiltering();

    shown.table.setHidden(true);
    EXPECT_TRUE(shown.widget.isHidden());
    EXPECT_TRUE(shown.bar.isHidden());

    shown.table.setHidden(false);
    EXPECT_FALSE(shown.widget.isHidden());
    EXPECT_FALSE(shown.bar.isHidden());
}

TEST(QtTableView, OutlivesItsWidgets)
{
    auto shown = std::make_unique<QWidget>();
    auto* widget = new QTableView(shown.get());
    auto* bar = new QWidget(shown.get());
    auto* line = new QLineEdit(bar);
    CountedRows rows;
    QtTableView table(*widget, bar, line);
    table.setDataSource(&rows, &rows);
    table.beginFiltering();

    shown.reset();
    table.setNeedsDisplay();
    TableWindow::settle();
    table.setHidden(true);
    table.setEnabled(false);
    table.reloadData();
    table.selectRow(0);
    table.editSelectedRows("check", CheckState::On);
    table.beginFiltering();
    table.endFiltering();

    EXPECT_EQ(table.selectedRow(), std::nullopt);
}

TEST(QtTableView, NotifiesItsDelegateOnceTheSelectedRowHasTheFocus)
{
    TableWindow shown(10);
    shown.table.selectRow(3);
    shown.settle();
    shown.rows.selectedRowChanges = 0;

    shown.press(Qt::Key_Down);
    shown.press(Qt::Key_Down);
    EXPECT_EQ(shown.rows.selectedRowChanges, 0U);
    shown.settle();
    EXPECT_EQ(shown.rows.selectedRowChanges, 1U);
    EXPECT_EQ(shown.table.selectedRow(), 5U);

    shown.press(Qt::Key_Down, Qt::ControlModifier);
    shown.settle();
    EXPECT_EQ(shown.rows.selectedRowChanges, 2U);
    EXPECT_EQ(shown.table.selectedRow(), std::nullopt);
}

TEST(QtTableView, LeavesItsWidgetWithoutRowsWhenItIsDestroyedFirst)
{
    TableWindow shown(3);
    QTableView widget;
    {
        QtTableView table(widget, nullptr, nullptr);
        table.beginFiltering();
        table.endFiltering();
        table.reloadData();
    }

    EXPECT_EQ(widget.model(), nullptr);
    EXPECT_FALSE(widget.grab().isNull());
}

}  // namespace

}  // namespace dunmora::test
