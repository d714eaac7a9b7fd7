#include "tests/adapters/qt/QtTest.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>

#include <atomic>
#include <limits>

namespace dunmora::test {

namespace {

class QtProgressIndicatorTest : public QtTest {
protected:
    /// Draws the bar with these values and returns the filled part, from 0 to 1.
    double drawn(double least, double greatest, double value)
    {
        indicator.setMinValue(least);
        indicator.setMaxValue(greatest);
        indicator.setDoubleValue(value);
        // A different value, so that the redraw is visible.
        bar.setValue(1);
        indicator.setNeedsDisplay();
        handleEventsUntil([&] { return bar.value() != 1; });
        EXPECT_LT(bar.minimum(), bar.maximum());
        return static_cast<double>(bar.value() - bar.minimum()) / (bar.maximum() - bar.minimum());
    }

    QWidget& shown()
    {
        interface->window().show();
        return shownWindow(QStringLiteral("ProgressWindow"));
    }

    std::unique_ptr<QtInterface> interface = load("ProgressWindow");
    ProgressIndicator& indicator = interface->progressIndicator("progress");
    TextField& text = interface->textField("txtInfo");
    QWidget& window = shown();
    QProgressBar& bar = widgetIn<QProgressBar>(window, "progress");
    QLabel& label = widgetIn<QLabel>(window, "txtInfo");
};

TEST_F(QtProgressIndicatorTest, DrawsTheValueBetweenMinimumAndMaximum)
{
    EXPECT_DOUBLE_EQ(drawn(0, 10, 0), 0);
    EXPECT_DOUBLE_EQ(drawn(0, 10, 5), 0.5);
    EXPECT_DOUBLE_EQ(drawn(0, 10, 10), 1);
    EXPECT_DOUBLE_EQ(drawn(10, 20, 15), 0.5);
}

TEST_F(QtProgressIndicatorTest, DrawsAFullBarForAValueAboveTheMaximum)
{
    EXPECT_DOUBLE_EQ(drawn(0, 10, 18), 1);
    EXPECT_DOUBLE_EQ(drawn(0, 0, 2), 1);
    EXPECT_DOUBLE_EQ(drawn(0, 10, -3), 0);
}

TEST_F(QtProgressIndicatorTest, DrawsAnEmptyBarForAnEmptyRange)
{
    EXPECT_DOUBLE_EQ(drawn(0, 0, 0), 0);
}

TEST_F(QtProgressIndicatorTest, IsBusyOnceItsAnimationStarts)
{
    indicator.startAnimation();
    indicator.startAnimation();

    EXPECT_EQ(bar.minimum(), bar.maximum());
}

TEST_F(QtProgressIndicatorTest, IsEmptyAndShowsValuesOnceItsAnimationStops)
{
    indicator.startAnimation();

    indicator.stopAnimation();

    EXPECT_LT(bar.minimum(), bar.maximum());
    EXPECT_EQ(bar.value(), bar.minimum());
    EXPECT_DOUBLE_EQ(drawn(0, 10, 5), 0.5);

    indicator.stopAnimation();
    EXPECT_EQ(bar.value(), bar.maximum() / 2) << "there was no animation to stop";
}

TEST_F(QtProgressIndicatorTest, DrawsTheLargestValues)
{
    constexpr auto kLargest = std::numeric_limits<std::int32_t>::max();

    EXPECT_DOUBLE_EQ(drawn(0, kLargest, kLargest), 1);
    EXPECT_NEAR(drawn(0, kLargest, kLargest / 2.0), 0.5, 0.001);
    EXPECT_DOUBLE_EQ(drawn(0, kLargest, 2.0 * kLargest), 1);
    EXPECT_DOUBLE_EQ(drawn(0, std::numeric_limits<double>::infinity(), 5), 0);
    EXPECT_DOUBLE_EQ(drawn(0, std::numeric_limits<double>::quiet_NaN(), 5), 0);
}

TEST_F(QtProgressIndicatorTest, DrawsFewOfManyValuesButAlwaysTheLast)
{
    constexpr int kPosts = 100000;
    int draws = 0;
    QObject::connect(&bar, &QProgressBar::valueChanged, &bar, [&] { ++draws; });
    std::atomic<bool> hasEnded = false;
    QElapsedTimer time;
    time.start();

    application.detachNewThread("LoadContacts", [&] {
        text.setStringValue("Loading Contacts...");
        for (int i = 1; i <= kPosts; ++i) {
            indicator.setMinValue(0);
            indicator.setMaxValue(kPosts);
            indicator.setDoubleValue(i);
            indicator.setNeedsDisplay();
        }
        text.setStringValue("Sorting contacts...");
        hasEnded = true;
    });
    handleEventsUntil([&] { return hasEnded && bar.value() == bar.maximum(); });

    // At most one per frame, plus the first and the last.
    EXPECT_LE(draws, time.elapsed() / 16 + 2);
    handleEventsUntil([&] { return label.text() == QStringLiteral("Sorting contacts..."); });
}

TEST_F(QtProgressIndicatorTest, NeverWaitsForTheMainThread)
{
    std::atomic<bool> hasEnded = false;
    application.detachNewThread("LoadContacts", [&] {
        for (int i = 0; i < 1000; ++i) {
            indicator.setDoubleValue(i);
            indicator.setNeedsDisplay();
            text.setStringValue("Loading Contacts...");
            text.setNeedsDisplay();
        }
        hasEnded = true;
        hasEnded.notify_one();
    });

    // Blocks the main thread, which handles no event meanwhile.
    hasEnded.wait(false);

    handleEvents();
    EXPECT_EQ(label.text(), QStringLiteral("Loading Contacts..."));
}

}  // namespace

}  // namespace dunmora::test
