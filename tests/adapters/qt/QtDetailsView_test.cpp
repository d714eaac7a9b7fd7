#include "adapters/qt/QtDetailsView.h"

#include <QAccessible>
#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QCoreApplication>
#include <QFocusEvent>
#include <QImage>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace dunmora::test {

namespace {

using Sign = DetailsLine::Sign;

DetailsLine line(const std::string& title, const std::string& value, Sign sign = Sign::None,
                 const std::string& verdict = "")
{
    return {title, value, sign, verdict, "", title + ": " + value};
}

std::string pngOf(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    image.save(&file, "PNG");
    return file.data().toStdString();
}

/// A details view in a window of its own.
class DetailsWindow {
public:
    explicit DetailsWindow(int width = 900)
    {
        list.resize(width, 300);
        list.show();
        settle();
    }

    void show(std::vector<DetailsLine> lines)
    {
        view.setLines(std::move(lines));
        settle();
    }

    static void settle()
    {
        for (int i = 0; i < 4; ++i) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }

    QRect place(int row) const { return list.visualRect(list.model()->index(row, 0)); }
    QImage drawn(int row) { return list.viewport()->grab(place(row)).toImage(); }
    QString accessibleName(int row)
    {
        return QAccessible::queryAccessibleInterface(&list)->child(row)->text(QAccessible::Name);
    }

    QListView list;
    QtDetailsView view{list};
};

}  // namespace

TEST(QtDetailsView, ReadsEachLineAloud)
{
    DetailsWindow shown;

    shown.show({line("E-mail", "ann@example.com"), line("Note", "Met in\nLondon")});

    EXPECT_EQ(shown.accessibleName(0), QStringLiteral("E-mail: ann@example.com"));
    EXPECT_EQ(shown.accessibleName(1), QStringLiteral("Note: Met in London"));
}

TEST(QtDetailsView, CopiesTheWholeCurrentValueAndNothingElse)
{
    const std::string longNote = "First\n" + std::string(5000, 'x');
    DetailsWindow shown;
    shown.show(
        {line("E-mail", "ann@example.com", Sign::OnlyHere, "only here"), line("Note", longNote)});
    QFocusEvent focus(QEvent::FocusIn);
    QApplication::sendEvent(&shown.list, &focus);

    QTest::keyClick(&shown.list, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("ann@example.com"));

    QTest::keyClick(&shown.list, Qt::Key_Down);
    QTest::keyClick(&shown.list, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), longNote);
}

TEST(QtDetailsView, StaysWhereItIsWhenOnlyTheVerdictsChange)
{
    DetailsWindow shown;
    constexpr int kLines = 40;
    std::vector<DetailsLine> lines;
    lines.reserve(kLines);
    for (int i = 0; i < kLines; ++i) {
        lines.push_back(line("Title " + std::to_string(i), "value", Sign::Same, "same"));
    }
    shown.show(lines);
    shown.list.setCurrentIndex(shown.list.model()->index(30, 0));
    shown.list.verticalScrollBar()->setValue(200);

    lines[30].sign = Sign::OnlyHere;
    lines[30].verdict = "only here";
    shown.show(lines);
    EXPECT_EQ(shown.list.verticalScrollBar()->value(), 200);
    EXPECT_EQ(shown.list.currentIndex().row(), 30);

    lines[0].title = "Another";
    shown.show(lines);
    EXPECT_EQ(shown.list.verticalScrollBar()->value(), 0);
}

TEST(QtDetailsView, ShowsLongValuesInSeveralLinesAndCutsVeryLongOnes)
{
    DetailsWindow shown;

    shown.show({line("Note", "short"), line("Note", std::string(300, 'x')),
                line("Note", std::string(1 << 20, 'x')), line("Note", std::string(1 << 20, '\n'))});

    EXPECT_GT(shown.place(1).height(), 2 * shown.place(0).height());
    EXPECT_LT(shown.place(2).height(), 30 * shown.place(0).height());
    EXPECT_LT(shown.place(3).height(), 30 * shown.place(0).height());
}

TEST(QtDetailsView, PutsTheVerdictBelowTheValueInANarrowView)
{
    DetailsWindow wide;
    DetailsWindow narrow(250);
    const std::vector lines{line("E-mail", "ann@example.com", Sign::Different, "kept: bob@x.org")};

    wide.show(lines);
    narrow.show(lines);

    EXPECT_GT(narrow.place(0).height(), 2 * wide.place(0).height());
}

TEST(QtDetailsView, GivesAHeadingTheWholeWidthAndAnotherLook)
{
    DetailsWindow shown;
    auto heading = line(std::string(60, 'x'), "");
    const auto ordinary = heading;
    heading.isHeading = true;

    // The first line may be highlighted.
    shown.show({line("A", "a"), ordinary, heading});

    const auto left = [&](int row) { return shown.drawn(row).copy(0, 0, 100, 40); };
    EXPECT_GT(shown.place(1).height(), 2 * shown.place(0).height());
    EXPECT_LT(shown.place(2).height(), 2 * shown.place(0).height());
    EXPECT_NE(left(1), left(2));
}

TEST(QtDetailsView, CopiesNoHeading)
{
    auto heading = line("File", "");
    heading.isHeading = true;
    DetailsWindow shown;
    shown.show({heading, line("Reload", "F5")});
    QApplication::clipboard()->setText(QStringLiteral("before"));
    QFocusEvent focus(QEvent::FocusIn);
    QApplication::sendEvent(&shown.list, &focus);

    QTest::keyClick(&shown.list, Qt::Key_C, Qt::ControlModifier);

    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("before"));
}

TEST(QtDetailsView, GivesTitlesTheSpaceOfTheVerdictsInAViewWithoutThem)
{
    const std::vector lines{line("Check or uncheck the selected rows", "Space")};
    DetailsWindow cards;
    QListView list;
    list.setProperty("withoutVerdicts", true);
    list.resize(900, 300);
    list.show();
    QtDetailsView view(list);
    cards.show(lines);
    view.setLines(lines);
    DetailsWindow::settle();

    EXPECT_LT(list.visualRect(list.model()->index(0, 0)).height(), cards.place(0).height());
}

TEST(QtDetailsView, SignsDifferInMoreThanTheirColour)
{
    DetailsWindow shown;

    // The first line may be highlighted.
    shown.show({line("A", "a"), line("A", "a"), line("A", "a", Sign::OnlyHere),
                line("A", "a", Sign::Same), line("A", "a", Sign::Different)});

    // The points in which a line differs from one without a sign, beyond the texts.
    const auto shape = [&](int row) {
        const auto bare = shown.drawn(1);
        const auto marked = shown.drawn(row);
        std::set<std::pair<int, int>> points;
        for (int y = 0; y < bare.height(); ++y) {
            for (int x = bare.width() / 3; x < bare.width(); ++x) {
                if (bare.pixel(x, y) != marked.pixel(x, y)) {
                    points.emplace(x, y);
                }
            }
        }
        return points;
    };
    for (const auto& [one, other] : {std::pair(2, 3), std::pair(3, 4), std::pair(4, 2)}) {
        EXPECT_GT(shape(one).size(), 10U);
        EXPECT_NE(shape(one), shape(other));
    }
}

TEST(QtDetailsView, ShowsPicturesAndOmitsThoseItCannotDecode)
{
    auto photo = line("Photo", "");
    photo.picture = pngOf({600, 400});
    auto broken = photo;
    broken.picture.resize(broken.picture.size() / 8);
    auto drawing = photo;
    drawing.picture = R"(<svg xmlns="http://www.w3.org/2000/svg" width="90" height="90"/>)";
    DetailsWindow shown;

    shown.show({line("Photo", ""), photo, broken, drawing});

    const int bare = shown.place(0).height();
    EXPECT_GT(shown.place(1).height(), 3 * bare);
    EXPECT_EQ(shown.place(2).height(), bare);
    EXPECT_EQ(shown.place(3).height(), bare);
    const auto drawn = shown.drawn(1);
    bool hasRed = false;
    for (int x = 0; x < drawn.width(); ++x) {
        hasRed = hasRed || drawn.pixelColor(x, drawn.height() / 2) == QColor(Qt::red);
    }
    EXPECT_TRUE(hasRed);
}

TEST(QtDetailsView, DoesNotDecodeAPictureThatWouldStallTheProgram)
{
    // A bitmap's header that claims 60,000 by 60,000 pixels.
    QImage small(1, 1, QImage::Format_RGB32);
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    small.save(&file, "BMP");
    auto bitmap = file.data().toStdString();
    for (const std::size_t field : {18U, 22U}) {
        bitmap[field] = '\x60';
        bitmap[field + 1] = '\xea';
    }
    auto photo = line("Photo", "");
    photo.picture = bitmap;
    DetailsWindow shown;

    shown.show({line("Photo", ""), photo});

    EXPECT_EQ(shown.place(1).height(), shown.place(0).height());
}

TEST(QtDetailsView, OutlivesItsWidget)
{
    auto list = std::make_unique<QListView>();
    QtDetailsView view(*list);
    view.setLines({line("A", "a")});

    list.reset();
    view.setLines({});
    view.setHidden(true);
}

}  // namespace dunmora::test
