#include "adapters/qt/DateFormat.h"
#include "tests/adapters/qt/TableWindow.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>

#include <chrono>
#include <cstddef>

namespace dunmora::test {

namespace {

constexpr std::size_t kManyRows = 60'000;

class TableCopy : public testing::Test {
protected:
    TableCopy() { QGuiApplication::clipboard()->setText(QStringLiteral("before")); }

    static void copy(TableWindow& shown) { shown.press(Qt::Key_C, Qt::ControlModifier); }

    static QString copied() { return QGuiApplication::clipboard()->text(); }
};

TEST_F(TableCopy, CopiesTheTextsOfTheSelectedRowsInTheOrderOfTheTable)
{
    TableWindow shown(4);
    shown.select(2, 3);
    shown.widget.selectionModel()->select(shown.index(0, 0),
                                          QItemSelectionModel::Select | QItemSelectionModel::Rows);

    copy(shown);

    EXPECT_EQ(copied(), QStringLiteral("First0\tLast0\t\t555-0000\t\t\t\n"
                                       "First2\tLast2\t\t555-0002\t\t\t\n"
                                       "First3\tLast3\t\t555-0003\t\t\t"));
}

TEST_F(TableCopy, CopiesWhatTheTableShows)
{
    TableWindow shown(1);
    auto& row = shown.rows.rows[0];
    const std::chrono::sys_seconds time{std::chrono::seconds(1'700'000'000)};
    row.texts = {{"fname", " "}, {"lname", "Lee\tSmith\r\nJunior"}};
    row.modified = time;
    row.style.substitute = {"fname", "Acme", ""};
    row.style.note = "Family";
    shown.rows.notesTitle = "Book";
    shown.table.reloadData();
    shown.select(0, 0);

    copy(shown);

    EXPECT_EQ(
        copied(),
        QStringLiteral("Acme\tLee Smith Junior\t\t\t\t\t%1\tFamily").arg(DateFormat().text(time)));
}

TEST_F(TableCopy, LeavesOutRowsThatAFilterHides)
{
    TableWindow shown(12);
    shown.widget.selectAll();
    shown.table.beginFiltering();
    shown.type(QStringLiteral("First1"));
    ASSERT_EQ(shown.rowCount(), 3);

    copy(shown);

    EXPECT_EQ(copied().count(u'\n'), 2);
    EXPECT_TRUE(copied().startsWith(QStringLiteral("First1\t")));
}

TEST_F(TableCopy, LeavesTheClipboardAloneWithoutASelection)
{
    TableWindow shown(2);
    copy(shown);
    EXPECT_EQ(copied(), QStringLiteral("before"));

    shown.select(0, 0);
    shown.table.setEnabled(false);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier);
    QCoreApplication::sendEvent(&shown.widget, &press);
    EXPECT_EQ(copied(), QStringLiteral("before")) << "the rows may not be asked about";
}

TEST_F(TableCopy, CopiesManyRowsInManyTurnsOfTheEventLoop)
{
    TableWindow shown(kManyRows);
    shown.widget.selectAll();

    copy(shown);
    EXPECT_EQ(copied(), QStringLiteral("before")) << "more than one turn";
    for (int turn = 0; turn < 10'000 && copied() == QStringLiteral("before"); ++turn) {
        QCoreApplication::processEvents();
    }

    EXPECT_EQ(copied().count(u'\n'), static_cast<qsizetype>(kManyRows) - 1);
    EXPECT_TRUE(copied().endsWith(QStringLiteral("\nFirst59999\tLast59999\t\t555-59999\t\t\t")));
}

TEST_F(TableCopy, FinishesBeforeTheTableIsDisabled)
{
    TableWindow shown(kManyRows);
    shown.widget.selectAll();
    copy(shown);
    ASSERT_EQ(copied(), QStringLiteral("before"));

    shown.table.setEnabled(false);

    EXPECT_EQ(copied().count(u'\n'), static_cast<qsizetype>(kManyRows) - 1);
}

TEST_F(TableCopy, StopsWhenTheRowsChange)
{
    TableWindow shown(kManyRows);
    shown.widget.selectAll();
    copy(shown);

    shown.rows.rows.resize(2);
    shown.table.reloadData();
    TableWindow::settle();

    EXPECT_EQ(copied(), QStringLiteral("before"));
}

}  // namespace

}  // namespace dunmora::test
