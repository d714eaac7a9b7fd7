#include "tests/adapters/qt/TableWindow.h"
#include "text/DisplayText.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QColor>
#include <QHeaderView>
#include <QImage>
#include <QPalette>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <set>
#include <string>
#include <tuple>

namespace dunmora::test {

namespace {

constexpr int kCheck = 0;
constexpr int kFirstName = 1;
constexpr int kLastName = 2;
constexpr int kNickname = 3;
constexpr int kHome = 4;
constexpr int kModified = 7;

double luminance(const QColor& colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

/// As WCAG 2 defines it.
double contrast(const QColor& one, const QColor& other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QPalette palette(const QColor& base, const QColor& text)
{
    QPalette palette;
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Window, base);
    palette.setColor(QPalette::WindowText, text);
    return palette;
}

/// The background of a row, taken where a cell is empty.
QColor ground(const TableWindow& shown, int row)
{
    return shown.drawn.pixelColor(shown.widget.visualRect(shown.index(row, kNickname)).center());
}

/// The colour of a row's upper edge.
QColor edge(const TableWindow& shown, int row)
{
    const auto cell = shown.widget.visualRect(shown.index(row, kNickname));
    return shown.drawn.pixelColor(cell.center().x(), cell.top());
}

TEST(TableLooks, BandsAlternateByGroupInLightAndDark)
{
    for (const auto& [base, text] : {std::pair(QColor(Qt::white), QColor(Qt::black)),
                                     std::pair(QColor(30, 30, 30), QColor(230, 230, 230))}) {
        TableWindow shown(6);
        shown.window.setPalette(palette(base, text));
        shown.draw();

        EXPECT_EQ(ground(shown, 0), base);
        EXPECT_EQ(ground(shown, 1), base);
        EXPECT_NE(ground(shown, 2), base);
        EXPECT_EQ(ground(shown, 3), ground(shown, 2));
        EXPECT_EQ(ground(shown, 4), base);
        EXPECT_LT(contrast(ground(shown, 2), base), 1.3) << "quiet";
        EXPECT_GT(contrast(ground(shown, 2), text), 7) << "readable";
    }
}

TEST(TableLooks, AVisibleLineSeparatesGroups)
{
    for (const auto& [base, text] : {std::pair(QColor(Qt::white), QColor(Qt::black)),
                                     std::pair(QColor(30, 30, 30), QColor(230, 230, 230))}) {
        TableWindow shown(6);
        shown.window.setPalette(palette(base, text));
        shown.draw();

        EXPECT_EQ(edge(shown, 0), ground(shown, 0));
        EXPECT_EQ(edge(shown, 1), ground(shown, 1));
        EXPECT_EQ(edge(shown, 3), ground(shown, 3));
        EXPECT_GT(contrast(edge(shown, 2), base), 3);
        EXPECT_GT(contrast(edge(shown, 4), base), 3);
    }
}

TEST(TableLooks, ALineSeparatesAdjacentGroupsInAFilteredTable)
{
    TableWindow shown(40);
    shown.table.beginFiltering();
    // Groups 0 and 10 have the same background.
    shown.rows.rows[0].texts["nickname"] = "x";
    shown.rows.rows[20].texts["nickname"] = "x";
    shown.type(QStringLiteral("x"));
    ASSERT_EQ(shown.rowCount(), 2);

    shown.draw();

    const auto cell = shown.widget.visualRect(shown.index(1, kHome));
    EXPECT_GT(contrast(shown.drawn.pixelColor(cell.right() - 2, cell.top()),
                       shown.drawn.pixelColor(cell.right() - 2, cell.center().y())),
              2.5);
}

TEST(TableLooks, ASelectedRowIsVisibleOnEveryBackground)
{
    TableWindow shown(6);
    shown.select(0, 2);
    shown.draw();

    EXPECT_EQ(ground(shown, 0), ground(shown, 2));
    EXPECT_GT(contrast(ground(shown, 0), ground(shown, 4)), 2);
    EXPECT_GT(contrast(ground(shown, 2), ground(shown, 3)), 2);
}

TEST(TableLooks, WarningsHaveIconsOfDifferentShapes)
{
    TableWindow shown(4);
    for (auto& row : shown.rows.rows) {
        row.style.group = 0;
    }
    shown.rows.rows[0].style.warning = {RowStyle::Warning::Sign::Doubt, "Doubtful"};
    shown.rows.rows[1].style.warning = {RowStyle::Warning::Sign::Loss, "Lost"};
    shown.rows.rows[2].style.warning = {RowStyle::Warning::Sign::OnlyHere, "Only here"};
    shown.draw();
    const auto cell = [&shown](int row) {
        return shown.drawn.copy(shown.widget.visualRect(shown.index(row, kCheck)));
    };
    // The pixels in which the cell differs from one without an icon.
    const auto shape = [&cell](int row) {
        const auto bare = cell(3);
        const auto marked = cell(row);
        std::set<std::pair<int, int>> points;
        for (int y = 0; y < bare.height(); ++y) {
            for (int x = 0; x < bare.width(); ++x) {
                if (bare.pixel(x, y) != marked.pixel(x, y)) {
                    points.emplace(x, y);
                }
            }
        }
        return points;
    };

    for (const auto& [one, other] : {std::pair(0, 1), std::pair(1, 2), std::pair(2, 0)}) {
        const auto mine = shape(one);
        const auto its = shape(other);
        EXPECT_GT(mine.size(), 50U);
        std::vector<std::pair<int, int>> different;
        std::set_symmetric_difference(mine.begin(), mine.end(), its.begin(), its.end(),
                                      std::back_inserter(different));
        EXPECT_GT(different.size(), 30U) << one << other;
    }
}

TEST(TableLooks, TheCheckBoxIsVisibleInLightAndDark)
{
    for (const auto& [base, text] : {std::pair(QColor(Qt::white), QColor(Qt::black)),
                                     std::pair(QColor(30, 30, 30), QColor(230, 230, 230))}) {
        TableWindow shown(2);
        shown.window.setPalette(palette(base, text));
        shown.draw();
        const auto cell = shown.drawn.copy(shown.widget.visualRect(shown.index(0, kCheck)));
        double best = 1;
        for (int x = 0; x < cell.width(); ++x) {
            best = std::max(best, contrast(cell.pixelColor(x, cell.height() / 2), base));
        }

        EXPECT_GT(best, 3);
    }
}

TEST(TableLooks, AsksForTheWholeWarningOnlyWhenItIsRead)
{
    TableWindow shown(2);
    shown.rows.rows[0].style.warning = {RowStyle::Warning::Sign::OnlyHere, "Only here"};
    shown.rows.moreWarning = ": a note";
    shown.table.setNeedsDisplay();
    shown.settle();
    shown.draw();
    EXPECT_EQ(shown.rows.warningQuestions, 0U);

    EXPECT_EQ(shown.index(0, kModified).data(Qt::ToolTipRole).toString(),
              QStringLiteral("<qt><p>Only here: a note</p></qt>"));
    EXPECT_EQ(shown.accessibleCell(0, 0).text(QAccessible::Description),
              QStringLiteral("Only here: a note"));
    EXPECT_EQ(shown.index(1, kModified).data(Qt::ToolTipRole).toString(), QString());

    // A disabled table may not ask.
    shown.table.setEnabled(false);
    EXPECT_EQ(shown.accessibleCell(0, 0).text(QAccessible::Description),
              QStringLiteral("Only here"));
}

TEST(TableLooks, DrawsASubstituteQuietlyWhereTheCellIsBlank)
{
    TableWindow shown(3);
    for (auto& row : shown.rows.rows) {
        row.texts["fname"] = "\u3000 ";
        row.style.group = 0;
    }
    shown.rows.rows[1].texts["fname"] = "Acme";
    shown.rows.rows[1].style.substitute = {"fname", "Other", "not read"};
    shown.rows.rows[2].style.substitute = {"fname", "Acme", "First Name: empty, Acme"};
    shown.table.setNeedsDisplay();
    shown.settle();
    shown.draw();
    // The greatest contrast with the background in a cell.
    const auto strength = [&](int row) {
        const auto place = shown.widget.visualRect(shown.index(row, 1)).adjusted(3, 3, -3, -3);
        double most = 1;
        for (int y = place.top(); y < place.bottom(); ++y) {
            for (int x = place.left(); x < place.right(); ++x) {
                most = std::max(most, contrast(shown.drawn.pixelColor(x, y), ground(shown, row)));
            }
        }
        return most;
    };

    EXPECT_EQ(shown.text(1, 1), QStringLiteral("Acme"));
    EXPECT_EQ(shown.text(2, 1), QStringLiteral("Acme"));
    EXPECT_EQ(strength(0), 1);
    EXPECT_GT(strength(2), 4);
    EXPECT_LT(strength(2), strength(1));
    EXPECT_EQ(shown.accessibleName(2, 1), QStringLiteral("First Name: empty, Acme"));
    EXPECT_EQ(shown.accessibleName(1, 1), QStringLiteral("First Name=\"Acme\""));
}

TEST(TableLooks, ShowsNotesInAColumnOfTheirOwn)
{
    TableWindow shown(2);
    ASSERT_EQ(shown.widget.model()->columnCount(), kModified + 1);
    shown.rows.rows[0].style.note = "Family";
    shown.rows.notesTitle = "Book";

    shown.table.reloadData();
    shown.settle();
    ASSERT_EQ(shown.widget.model()->columnCount(), kModified + 2);
    EXPECT_EQ(shown.text(0, kModified + 1), QStringLiteral("Family"));
    EXPECT_EQ(shown.accessibleName(0, kModified + 1), QStringLiteral("Book=\"Family\""));
    EXPECT_EQ(
        shown.widget.model()->headerData(kModified + 1, Qt::Horizontal, Qt::DisplayRole).toString(),
        QStringLiteral("Book"));

    shown.rows.notesTitle = "";
    shown.table.reloadData();
    shown.settle();
    EXPECT_EQ(shown.widget.model()->columnCount(), kModified + 1);
}

TEST(TableLooks, EveryCellOfARowShowsItsWarningInATip)
{
    TableWindow shown(2);
    shown.rows.rows[0].style.warning = {RowStyle::Warning::Sign::Loss, "All <b>copies</b> go"};

    for (int column = 0; column <= kModified; ++column) {
        EXPECT_EQ(shown.index(0, column).data(Qt::ToolTipRole).toString(),
                  QStringLiteral("<qt><p>All &lt;b&gt;copies&lt;/b&gt; go</p></qt>"));
        EXPECT_EQ(shown.accessibleCell(0, column).text(QAccessible::Description),
                  QStringLiteral("All <b>copies</b> go"));
        EXPECT_EQ(shown.index(1, column).data(Qt::ToolTipRole).toString(), QString());
    }
}

TEST(TableLooks, ATipShowsATextThatItsCellCuts)
{
    TableWindow shown(2);
    const std::string text = "<i>" + std::string(300, 'm');
    shown.rows.rows[0].texts["fname"] = text;
    shown.draw();
    const auto cell = shown.widget.visualRect(shown.index(0, kFirstName)).center();
    QHelpEvent help(QEvent::ToolTip, cell, shown.widget.viewport()->mapToGlobal(cell));

    QCoreApplication::sendEvent(shown.widget.viewport(), &help);

    EXPECT_EQ(QToolTip::text(),
              QStringLiteral("<qt><p>&lt;i&gt;%1</p></qt>").arg(QString(300, u'm')));
    QToolTip::hideText();
}

TEST(TableLooks, AMegabyteInACellIsDrawnAndReadInPart)
{
    TableWindow shown(2);
    const std::string megabyte(1'000'000, 'm');
    shown.rows.rows[0].texts["fname"] = megabyte;
    shown.rows.rows[0].style.warning = {RowStyle::Warning::Sign::Loss, megabyte};
    shown.rows.rows[0].style.accessibleText = megabyte;
    constexpr qsizetype kMost{2 * kMaxShownBytes};
    shown.draw();

    for (const auto column : {kCheck, kFirstName}) {
        for (const auto role : {Qt::DisplayRole, Qt::ToolTipRole, Qt::AccessibleTextRole,
                                Qt::AccessibleDescriptionRole}) {
            EXPECT_LE(shown.index(0, column).data(role).toString().size(), kMost) << role;
        }
    }
    const auto cell = shown.widget.visualRect(shown.index(0, kFirstName)).center();
    QHelpEvent help(QEvent::ToolTip, cell, shown.widget.viewport()->mapToGlobal(cell));
    QCoreApplication::sendEvent(shown.widget.viewport(), &help);
    EXPECT_LE(QToolTip::text().size(), 2 * kMost);
    QToolTip::hideText();
}

TEST(TableLooks, RowsAreEquallyHighAndFitEveryFont)
{
    TableWindow shown(10);
    const int height = shown.widget.rowHeight(0);
    EXPECT_GE(height, shown.widget.fontMetrics().height());
    auto font = shown.widget.font();
    font.setPointSizeF(font.pointSizeF() * 2);

    shown.widget.setFont(font);

    EXPECT_GE(shown.widget.rowHeight(0), shown.widget.fontMetrics().height());
    EXPECT_GT(shown.widget.rowHeight(0), height);
    EXPECT_EQ(shown.widget.rowHeight(9), shown.widget.rowHeight(0));

    font.setPointSizeF(font.pointSizeF() / 2);
    shown.widget.setFont(font);
    EXPECT_EQ(shown.widget.rowHeight(0), height);
}

TEST(TableLooks, ColumnsFitTheirTexts)
{
    TableWindow shown(0);
    shown.add(0);
    shown.rows.rows[0].texts["home"] = "+49 (170) 1234567890";
    shown.rows.rows[0].texts["work"] = std::string(500, 'm');
    shown.table.reloadData();
    const auto metrics = shown.widget.fontMetrics();

    EXPECT_GT(shown.widget.columnWidth(kHome),
              metrics.horizontalAdvance(QStringLiteral("+49 (170) 1234567890")));
    shown.window.resize(100, 400);
    TableWindow::settle();
    EXPECT_LT(shown.widget.columnWidth(kHome + 1), 40 * metrics.averageCharWidth());
    for (int column = 0; column <= kModified; ++column) {
        EXPECT_GE(shown.widget.columnWidth(column),
                  shown.widget.horizontalHeader()->sectionSizeHint(column))
            << column;
    }
}

TEST(TableLooks, ColumnsFillTheTable)
{
    TableWindow shown(10);
    const int nickname = shown.widget.columnWidth(kNickname);
    for (const int width : {1'600, 1'001, 2'000}) {
        shown.window.resize(width, 400);
        TableWindow::settle();

        EXPECT_EQ(shown.widget.horizontalHeader()->length(), shown.widget.viewport()->width());
        EXPECT_EQ(shown.widget.columnWidth(kNickname), nickname);
        EXPECT_NEAR(shown.widget.columnWidth(kFirstName), shown.widget.columnWidth(kLastName), 20);
    }
}

TEST(TableLooks, ANarrowTableScrollsSideways)
{
    TableWindow shown(10);
    shown.window.resize(300, 400);
    TableWindow::settle();

    EXPECT_GT(shown.widget.horizontalHeader()->length(), shown.widget.viewport()->width());
    EXPECT_GT(shown.widget.horizontalScrollBar()->maximum(), 0);
}

TEST(TableLooks, AColumnKeepsTheWidthThatTheUserSet)
{
    TableWindow shown(10);
    auto& header = *shown.widget.horizontalHeader();
    const int lastName = header.sectionSize(kLastName);

    header.resizeSection(kFirstName, 90);
    shown.window.resize(1'500, 400);
    TableWindow::settle();
    shown.table.reloadData();

    EXPECT_EQ(header.sectionSize(kFirstName), 90);
    EXPECT_EQ(header.sectionSize(kLastName), lastName);
    EXPECT_EQ(header.length(), shown.widget.viewport()->width());
    auto font = shown.widget.font();
    font.setPointSizeF(font.pointSizeF() * 2);
    shown.widget.setFont(font);
    EXPECT_NEAR(header.sectionSize(kFirstName), 180, 20);
}

TEST(TableLooks, ColumnsAreNeitherSortedNorMoved)
{
    TableWindow shown(4);
    auto& header = *shown.widget.horizontalHeader();
    shown.rows.rows[0].texts["fname"] = "Zoe";

    QTest::mouseClick(header.viewport(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(header.sectionPosition(kFirstName) + 30, 5));

    EXPECT_EQ(shown.text(0, kFirstName), QStringLiteral("Zoe"));
    EXPECT_FALSE(header.sectionsMovable());
    EXPECT_FALSE(header.isSortIndicatorShown());
    EXPECT_TRUE(shown.selected().empty());
    EXPECT_TRUE(shown.widget.verticalHeader()->isHidden());
}

TEST(TableLooks, EveryCellHasAnAccessibleName)
{
    TableWindow shown(3);
    shown.rows.rows[1].texts = {{"fname", "Ann"}, {"lname", "Lee"}, {"home", "555-0100"}};
    shown.rows.rows[1].style.accessibleText = "Ann\nLee, kept";

    EXPECT_EQ(shown.accessibleName(1, kHome), QStringLiteral("Home=\"555-0100\""));
    EXPECT_EQ(shown.accessibleName(1, kNickname), QStringLiteral("Nickname=\"\""));
    EXPECT_EQ(shown.accessibleName(1, kModified), QStringLiteral("Modified=\"\""));
    EXPECT_EQ(shown.accessibleName(1, kCheck), QStringLiteral("Ann Lee, kept"));
}

TEST(TableLooks, TheCheckBoxReportsItsState)
{
    TableWindow shown(2);
    shown.rows.rows[1].isChecked = true;

    EXPECT_FALSE(shown.accessibleCell(0, kCheck).state().checked);
    EXPECT_TRUE(shown.accessibleCell(1, kCheck).state().checked);
}

TEST(TableLooks, HeadersHaveNames)
{
    TableWindow shown(3);
    auto* accessible = QAccessible::queryAccessibleInterface(&shown.widget);
    const auto name = [accessible](int child) {
        return accessible->child(child)->text(QAccessible::Name);
    };

    EXPECT_EQ(name(1), QStringLiteral("Delete"));
    EXPECT_EQ(name(8), QStringLiteral("Modified"));
    EXPECT_EQ(name(9), QStringLiteral("Row 1"));
    EXPECT_EQ(accessible->tableInterface()->columnDescription(0), QStringLiteral("Delete"));
    EXPECT_EQ(shown.widget.model()->headerData(0, Qt::Horizontal, Qt::ToolTipRole).toString(),
              QStringLiteral("<qt><p>Delete</p></qt>"));
}

TEST(TableLooks, DrawsRowsQuieterThatAFilterShowsOnlyTogetherWithOthers)
{
    for (const auto& colours : {std::pair(Qt::white, Qt::black), {Qt::black, Qt::white}}) {
        // A lambda cannot use a structured binding.
        const auto base = colours.first;
        TableWindow shown(4);
        shown.rows.showsGroups = true;
        shown.widget.setPalette(palette(base, colours.second));
        shown.rows.rows[0].texts["lname"] = "WWWWWW";
        shown.rows.rows[1].texts["lname"] = "WWWWWW";
        shown.rows.rows[0].texts["nickname"] = "Five";
        shown.table.beginFiltering();
        shown.type(QStringLiteral("Five"));
        shown.draw();

        /// The best contrast of a pixel of the last name with its background.
        const auto best = [&](int row) {
            double most = 1;
            const auto cell = shown.widget.visualRect(shown.index(row, kLastName));
            for (int x = cell.left(); x < cell.left() + 60; ++x) {
                const auto pixel = shown.drawn.pixelColor(x, cell.center().y());
                most = std::max(most, contrast(pixel, QColor(base)));
            }
            return most;
        };
        EXPECT_GT(best(0), best(1) + 3);
        EXPECT_GE(best(1), 4.5);
    }
}

}  // namespace

}  // namespace dunmora::test
