#include "tests/adapters/qt/TableWindow.h"

#include <gtest/gtest.h>

#include <QHeaderView>
#include <QScreen>

#include <chrono>
#include <string>

namespace dunmora::test {

namespace {

constexpr int kFirstName = 1;
constexpr int kLastName = 2;
constexpr int kNickname = 3;
constexpr int kHome = 4;
constexpr int kWork = 5;
constexpr int kMobile = 6;
constexpr int kModified = 7;

int textWidth(const TableWindow& shown, const QString& text)
{
    return shown.widget.fontMetrics().horizontalAdvance(text);
}

/// Whether the column is wide enough to draw the text whole.
bool shows(const TableWindow& shown, int column, const QString& text)
{
    const TableModel model;
    return shown.widget.columnWidth(column) >=
           textWidth(shown, text) + TableCellDelegate(shown.widget, model).textMargins();
}

void setText(TableWindow& shown, std::size_t row, const char* column, const std::string& text)
{
    shown.rows.rows[row].texts[column] = text;
}

TEST(TableColumnWidths, FitTextsThroughoutTheTable)
{
    TableWindow shown(2'000);
    shown.window.resize(100, 400);
    for (std::size_t row = 0; row < 2'000; ++row) {
        setText(shown, row, "home", row < 1'500 ? "" : "+49 711 55501" + std::to_string(row));
        // Every second copy.
        setText(shown, row, "work", row % 2 == 0 ? "" : "+49 711 55502" + std::to_string(row));
    }

    shown.table.reloadData();

    EXPECT_TRUE(shows(shown, kHome, QStringLiteral("+49 711 555011999")));
    EXPECT_TRUE(shows(shown, kWork, QStringLiteral("+49 711 555021999")));
}

TEST(TableColumnWidths, AskForFewRowsOfManyPeople)
{
    TableWindow shown(20'000);
    shown.rows.cellQuestions = 0;

    shown.table.reloadData();

    EXPECT_LT(shown.rows.cellQuestions, 2'000U);
}

TEST(TableColumnWidths, HaveRoomForTheLeastTextOfAColumn)
{
    TableWindow shown(10);
    shown.window.resize(100, 400);
    for (std::size_t row = 0; row < 10; ++row) {
        setText(shown, row, "home", row == 0 ? "1" : "");
    }
    shown.rows.leastColumn = "home";
    shown.rows.leastColumnText = "+49 (711) 5550-1000";

    shown.table.reloadData();

    EXPECT_TRUE(shows(shown, kHome, QStringLiteral("+49 (711) 5550-1000")));
    EXPECT_FALSE(shows(shown, kWork, QStringLiteral("+49 (711) 5550-1000")));
}

TEST(TableColumnWidths, SpareWidthGoesFirstToColumnsThatCutTexts)
{
    TableWindow shown(100);
    const std::string number = "+49 (711) 555-0100 extension 1234567";
    for (std::size_t row = 1; row < 100; ++row) {
        setText(shown, row, "mobile", "555-0100");
    }
    setText(shown, 0, "home", number);
    setText(shown, 0, "mobile", "+49 (711) 555-0100");
    const auto resize = [&shown](int width) {
        shown.window.resize(width, 400);
        TableWindow::settle();
        shown.table.reloadData();
    };
    resize(100);
    const int firstName = shown.widget.columnWidth(kFirstName);
    const int nickname = shown.widget.columnWidth(kNickname);
    EXPECT_FALSE(shows(shown, kHome, QString::fromStdString(number)));
    EXPECT_FALSE(shows(shown, kMobile, QStringLiteral("+49 (711) 555-0100")));
    const int all = shown.widget.horizontalHeader()->length();

    // Too little for both: the one that needs less is satisfied.
    resize(all + textWidth(shown, QStringLiteral("+49 (711) 555-0100")) * 3 / 2);
    EXPECT_TRUE(shows(shown, kMobile, QStringLiteral("+49 (711) 555-0100")));
    EXPECT_FALSE(shows(shown, kHome, QString::fromStdString(number)));
    EXPECT_EQ(shown.widget.columnWidth(kFirstName), firstName);

    resize(2 * all);
    EXPECT_TRUE(shows(shown, kHome, QString::fromStdString(number)));
    EXPECT_GT(shown.widget.columnWidth(kFirstName), firstName);
    EXPECT_NEAR(shown.widget.columnWidth(kFirstName), shown.widget.columnWidth(kLastName), 20);
    EXPECT_EQ(shown.widget.columnWidth(kNickname), nickname);
    EXPECT_EQ(shown.widget.horizontalHeader()->length(), shown.widget.viewport()->width());
}

/// Widths as the user has chosen them, by identifier.
ColumnWidths chosenWidths()
{
    return {{"check", 40}, {"fname", 90}, {"lname", 91},  {"nickname", 92},
            {"home", 93},  {"work", 94},  {"mobile", 95}, {"modified", 96}};
}

TEST(TableColumnWidths, OfAnEarlierRunStayWhenRowsArrive)
{
    TableWindow shown;

    shown.table.setChosenWidths(chosenWidths());
    for (std::size_t i = 0; i < 20; ++i) {
        shown.add(i);
    }
    setText(shown, 0, "home", "+49 (711) 555-0100 extension 1234567");
    shown.table.reloadData();

    EXPECT_EQ(shown.widget.columnWidth(kFirstName), 90);
    EXPECT_EQ(shown.widget.columnWidth(kHome), 93);
    // The last one takes the rest.
    EXPECT_EQ(shown.widget.horizontalHeader()->length(), shown.widget.viewport()->width());
}

TEST(TableColumnWidths, OfAnEarlierRunAreWithinTheScreenAndNeverTooNarrow)
{
    TableWindow shown(10);
    auto widths = chosenWidths();
    widths["home"] = 100'000;
    widths["work"] = 1;
    widths["unknown"] = 50;

    shown.table.setChosenWidths(widths);

    EXPECT_EQ(shown.widget.columnWidth(kHome), shown.widget.screen()->availableSize().width());
    EXPECT_EQ(shown.widget.columnWidth(kWork),
              shown.widget.horizontalHeader()->minimumSectionSize());
}

TEST(TableColumnWidths, OfAnEarlierRunAreIgnoredUnlessEveryColumnHasOne)
{
    TableWindow shown(10);
    const int width = shown.widget.columnWidth(kHome);

    shown.table.setChosenWidths({{"home", 93}, {"fname", 90}});

    EXPECT_EQ(shown.widget.columnWidth(kHome), width);
}

TEST(TableColumnWidths, StayAsTheUserChoseThemWhenTheNotesComeAndGo)
{
    TableWindow shown(10);
    shown.widget.horizontalHeader()->resizeSection(kHome, 123);

    shown.rows.notesTitle = "Book";
    shown.table.reloadData();
    EXPECT_EQ(shown.widget.columnWidth(kHome), 123);

    auto font = shown.widget.font();
    font.setPointSize(2 * font.pointSize());
    shown.widget.setFont(font);
    TableWindow::settle();
    const int width = shown.widget.columnWidth(kHome);
    EXPECT_GT(width, 123);

    shown.rows.notesTitle = "";
    shown.table.reloadData();
    EXPECT_EQ(shown.widget.columnWidth(kHome), width);
}

TEST(TableColumnWidths, AreReportedWhenTheUserHasResizedAColumn)
{
    TableWindow shown(10);
    ColumnWidths reported;
    shown.table.onChosenWidths([&](const ColumnWidths& widths) { reported = widths; });
    shown.window.resize(900, 400);
    TableWindow::settle();
    EXPECT_EQ(reported, ColumnWidths());

    shown.widget.horizontalHeader()->resizeSection(kHome, 123);

    EXPECT_EQ(reported.size(), chosenWidths().size());
    EXPECT_EQ(reported["home"], 123);
    EXPECT_EQ(reported["fname"], shown.widget.columnWidth(kFirstName));
}

TEST(TableColumnWidths, NeverCutADate)
{
    TableWindow shown(1'000);
    shown.window.resize(100, 400);
    // Few enough that they may not be measured.
    for (std::size_t row = 0; row < 1'000; row += 150) {
        shown.rows.rows[row].modified =
            std::chrono::sys_days(std::chrono::year(2023) / 12 / 28) + std::chrono::hours(row);
    }

    shown.table.reloadData();

    for (int row = 0; row < shown.rowCount(); ++row) {
        EXPECT_TRUE(shows(shown, kModified, shown.text(row, kModified)))
            << shown.text(row, kModified).toStdString();
    }
}

}  // namespace

}  // namespace dunmora::test
