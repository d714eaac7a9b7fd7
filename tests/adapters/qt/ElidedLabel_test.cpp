#include "adapters/qt/ElidedLabel.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QCoreApplication>
#include <QHelpEvent>
#include <QImage>
#include <QPixmap>
#include <QToolTip>

namespace dunmora::test {

namespace {

const auto kText = QStringLiteral("41 duplicates of 1000000");

class ElidedLabelTest : public testing::Test {
protected:
    ElidedLabelTest()
    {
        label.setTextFormat(Qt::PlainText);
        label.setIndent(kIndent);
        label.resize(label.sizeHint());
    }

    void TearDown() override { QToolTip::hideText(); }

    QString toolTip()
    {
        QHelpEvent event(QEvent::ToolTip, label.rect().center(), QPoint(50, 50));
        QCoreApplication::sendEvent(&label, &event);
        return QToolTip::text();
    }

    static constexpr int kIndent = 12;

    ElidedLabel label{kText};
};

TEST_F(ElidedLabelTest, EndsInAnEllipsisWhenItIsTooNarrow)
{
    EXPECT_FALSE(label.isCut());
    label.resize(label.width() - 20, label.height());
    QLabel expected(label.fontMetrics().elidedText(kText, Qt::ElideRight, label.width() - kIndent));
    expected.setIndent(kIndent);
    expected.resize(label.size());

    EXPECT_TRUE(label.isCut());
    EXPECT_EQ(label.grab().toImage(), expected.grab().toImage());
}

TEST_F(ElidedLabelTest, BeginsInAnEllipsisWhenItsEndMattersMore)
{
    label.setProperty("cutsBeginning", true);
    label.resize(label.width() - 20, label.height());
    QLabel expected(label.fontMetrics().elidedText(kText, Qt::ElideLeft, label.width() - kIndent));
    expected.setIndent(kIndent);
    expected.resize(label.size());

    EXPECT_EQ(label.grab().toImage(), expected.grab().toImage());
}

TEST_F(ElidedLabelTest, HasItsWholeTextAsToolTipOnlyWhenItIsCut)
{
    EXPECT_EQ(toolTip(), QString());

    label.resize(label.width() - 20, label.height());

    EXPECT_EQ(toolTip(), QStringLiteral("<qt><p>") + kText + QStringLiteral("</p></qt>"));
    auto* const accessible = QAccessible::queryAccessibleInterface(&label);
    EXPECT_EQ(accessible->text(QAccessible::Name), kText);
}

TEST_F(ElidedLabelTest, NeverCutsTextThatWraps)
{
    label.setWordWrap(true);
    label.resize(20, 20);

    EXPECT_FALSE(label.isCut());
}

}  // namespace

}  // namespace dunmora::test
