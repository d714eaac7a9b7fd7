#include "adapters/qt/NoticeButton.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QCoreApplication>
#include <QHelpEvent>
#include <QImage>
#include <QPixmap>
#include <QToolTip>

namespace dunmora::test {

namespace {

class NoticeButtonTest : public testing::Test {
protected:
    NoticeButtonTest()
    {
        for (auto* const button : {&notice, &count}) {
            button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        }
        notice.setText(QStringLiteral("1,234 cards of Smith && Sons were skipped"));
        count.setText(QStringLiteral("1,234"));
        notice.resize(notice.minimumSizeHint());
        count.resize(count.sizeHint());
    }

    void TearDown() override { QToolTip::hideText(); }

    QString toolTip()
    {
        QHelpEvent event(QEvent::ToolTip, notice.rect().center(), QPoint(50, 50));
        QCoreApplication::sendEvent(&notice, &event);
        return QToolTip::text();
    }

    NoticeButton notice;
    NoticeButton count;
};

TEST_F(NoticeButtonTest, ShowsOnlyItsNumberWhenItIsTooNarrow)
{
    EXPECT_EQ(notice.size(), count.size());
    EXPECT_EQ(notice.grab().toImage(), count.grab().toImage());

    notice.resize(notice.sizeHint());
    count.resize(notice.size());

    EXPECT_NE(notice.grab().toImage(), count.grab().toImage());
}

TEST_F(NoticeButtonTest, ShowsOnlyItsSignWhenItsSentenceHasNoNumber)
{
    notice.setText(QStringLiteral("Only rows that need a look"));

    const auto text = notice.fontMetrics().size(Qt::TextShowMnemonic, notice.text());
    EXPECT_EQ(notice.minimumSizeHint().width(), notice.sizeHint().width() - text.width());
}

TEST_F(NoticeButtonTest, CutsALongSentence)
{
    notice.setText(QStringLiteral("1 card in a file was skipped because it breaks off there"));
    const int least = notice.leastSentenceWidth();
    EXPECT_LT(least, notice.sizeHint().width());
    notice.resize(least, notice.height());
    const auto cut = notice.grab().toImage();
    count.setText(notice.fontMetrics().elidedText(
        notice.text(), Qt::ElideRight,
        least - (count.sizeHint().width() -
                 count.fontMetrics().size(Qt::TextShowMnemonic, count.text()).width())));
    count.resize(notice.size());

    EXPECT_TRUE(notice.showsSentence());
    EXPECT_EQ(cut, count.grab().toImage());
    EXPECT_TRUE(toolTip().contains(notice.text()));
}

TEST_F(NoticeButtonTest, KeepsItsSentenceAsToolTipAndAccessibleName)
{
    notice.setToolTip(QStringLiteral("Show them"));

    EXPECT_EQ(toolTip(), QStringLiteral("<qt><p>1,234 cards of Smith &amp; Sons were skipped</p>"
                                        "<p>Show them</p></qt>"));
    auto* const accessible = QAccessible::queryAccessibleInterface(&notice);
    EXPECT_EQ(accessible->text(QAccessible::Name),
              QStringLiteral("1,234 cards of Smith & Sons were skipped"));
}

TEST_F(NoticeButtonTest, DoesNotRepeatASentenceThatIsShown)
{
    notice.resize(notice.sizeHint());

    EXPECT_EQ(toolTip(), QString());
}

}  // namespace

}  // namespace dunmora::test
