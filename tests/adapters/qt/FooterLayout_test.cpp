#include "adapters/qt/FooterLayout.h"

#include "adapters/qt/NoticeButton.h"

#include <gtest/gtest.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QWidget>

namespace dunmora::test {

namespace {

class FooterLayoutTest : public testing::Test {
protected:
    FooterLayoutTest()
    {
        auto* const replaced = new QHBoxLayout(&footer);
        replaced->setContentsMargins({});
        for (auto* const label : {&total, &result}) {
            replaced->addWidget(label);
        }
        result.setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        replaced->addWidget(&losses);
        replaced->addWidget(&skipped);
        replaced->addStretch();
        layout = new FooterLayout(footer);
    }

    void setWidth(int width)
    {
        footer.resize(width, layout->heightForWidth(width));
        layout->setGeometry(footer.rect());
    }

    int wholeWidth() const { return layout->sizeHint().width(); }

    QWidget footer;
    QLabel total{QStringLiteral("41 duplicates of 1000000"), &footer};
    QLabel result{QStringLiteral("Checked 2 people."), &footer};
    NoticeButton losses{&footer};
    NoticeButton skipped{&footer};
    FooterLayout* layout = nullptr;

    void SetUp() override
    {
        losses.setText(QStringLiteral("4 people would lose every copy"));
        skipped.setText(QStringLiteral("20 cards were skipped"));
    }
};

TEST_F(FooterLayoutTest, KeepsEverythingInOneLineWhileItFits)
{
    setWidth(wholeWidth() + 100);

    EXPECT_EQ(losses.y(), total.y());
    EXPECT_EQ(skipped.geometry().right(), footer.width() - 1);
    EXPECT_TRUE(skipped.showsSentence());
    EXPECT_EQ(total.width(), total.sizeHint().width());
}

TEST_F(FooterLayoutTest, GivesTheButtonsALineOfTheirOwnInANarrowerWindow)
{
    setWidth(wholeWidth() - 1);

    EXPECT_GT(losses.y(), total.geometry().bottom());
    EXPECT_EQ(losses.y(), skipped.y());
    EXPECT_EQ(losses.x(), 0);
    EXPECT_TRUE(losses.showsSentence());
    EXPECT_TRUE(skipped.showsSentence());
    EXPECT_EQ(result.geometry().right(), footer.width() - 1);
}

TEST_F(FooterLayoutTest, ShortensTheLastButtonFirst)
{
    setWidth(losses.sizeHint().width() + layout->spacing() + skipped.sizeHint().width() - 1);

    EXPECT_TRUE(losses.showsSentence());
    EXPECT_EQ(skipped.width(), skipped.minimumSizeHint().width());
}

TEST_F(FooterLayoutTest, CutsALongSentenceAndGivesItTheSpareWidth)
{
    skipped.setText(QStringLiteral(
        "1 card in a file was skipped because it breaks off. It stays in the file."));
    layout->invalidate();
    const int shortest =
        losses.sizeHint().width() + layout->spacing() + skipped.leastSentenceWidth();

    setWidth(shortest + 10);
    EXPECT_TRUE(losses.showsSentence());
    EXPECT_TRUE(skipped.showsSentence());
    EXPECT_EQ(skipped.width(), skipped.leastSentenceWidth() + 10);

    setWidth(shortest - 1);
    EXPECT_TRUE(losses.showsSentence());
    EXPECT_EQ(skipped.width(), skipped.minimumSizeHint().width());

    setWidth(wholeWidth());
    EXPECT_EQ(skipped.y(), total.y());
}

TEST_F(FooterLayoutTest, CutsTheLabelsLast)
{
    setWidth(layout->minimumSize().width());

    EXPECT_EQ(losses.width(), losses.minimumSizeHint().width());
    EXPECT_EQ(skipped.width(), skipped.minimumSizeHint().width());
    EXPECT_LT(skipped.geometry().right(), footer.width());
    EXPECT_EQ(total.geometry().right(), footer.width() - layout->spacing() - 1);
}

TEST_F(FooterLayoutTest, KeepsItsLinesWhateverTheResult)
{
    const int width = wholeWidth();
    const int height = layout->heightForWidth(width);

    result.setText(QString(200, QLatin1Char('x')));
    layout->invalidate();

    EXPECT_EQ(wholeWidth(), width);
    EXPECT_EQ(layout->heightForWidth(width), height);
}

TEST_F(FooterLayoutTest, NeedsNoLineForHiddenButtons)
{
    losses.hide();
    skipped.hide();

    setWidth(1);

    EXPECT_EQ(footer.height(), total.sizeHint().height());
    EXPECT_EQ(layout->minimumSize().width(), 0);
}

}  // namespace

}  // namespace dunmora::test
