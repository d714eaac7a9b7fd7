#include "programs/dunmora-cli/ProgressLine.h"

#include "base/NotificationCenter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <optional>
#include <sstream>
#include <utility>

namespace dunmora::test {
namespace {

constexpr std::chrono::milliseconds kAtOnce(0);

/// A stream that reports when somebody has flushed it.
class FlushedStream final : public std::stringbuf {
public:
    void waitForFlush() { flushed_.get_future().wait(); }

protected:
    int sync() override
    {
        if (!std::exchange(isFlushed_, true)) {
            flushed_.set_value();
        }
        return 0;
    }

private:
    bool isFlushed_ = false;
    std::promise<void> flushed_;
};

class ProgressLineTest : public testing::Test {
protected:
    static void post(std::int32_t current, std::int32_t total)
    {
        const auto progress = std::make_shared<Progress>();
        progress->current = current;
        progress->total = total;
        NotificationCenter::defaultCenter().postNotification(kMsgProgress, nullptr, progress);
    }

    static void say(std::string_view name, std::string_view text)
    {
        NotificationCenter::defaultCenter().postText(name, nullptr, text);
    }

    /// What has been drawn since the last call.
    std::string drawn()
    {
        auto text = err_.str();
        err_.str("");
        return text;
    }

    std::ostringstream err_;
};

TEST_F(ProgressLineTest, ShowsTheMessageThenTheBar)
{
    const ProgressLine line(err_, 80, kAtOnce);

    say(kMsgShowMessage, "Sorting...");
    EXPECT_EQ(drawn(), "\rSorting...");
    post(1, 4);
    EXPECT_EQ(drawn(), "\rSorting... [" + std::string(10, '#') + std::string(30, '.') + "]  25%");
}

TEST_F(ProgressLineTest, DrawsAboutAHundredTimesPerPass)
{
    const ProgressLine line(err_, 80, kAtOnce);
    say(kMsgShowMessage, "Loading...");

    for (int i = 0; i < 100000; ++i) {
        post(i, 100000);
    }

    const auto text = drawn();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\r'), 101);
    EXPECT_TRUE(text.ends_with(" 99%"));
}

TEST_F(ProgressLineTest, StaysFullWhenADeletionCountsBeyondItsTotal)
{
    const ProgressLine line(err_, 80, kAtOnce);
    say(kMsgShowMessage, "Deleting...");

    for (int i = 0; i < 4; ++i) {
        post(2 * i, 4);
    }

    EXPECT_TRUE(drawn().ends_with("[" + std::string(40, '#') + "] 100%"));
}

TEST_F(ProgressLineTest, HandlesTheLargestNumbers)
{
    const ProgressLine line(err_, 80, kAtOnce);
    say(kMsgShowMessage, "x");

    post(2147483646, 2147483647);
    EXPECT_TRUE(drawn().ends_with(" 99%"));
    post(0, 0);
    EXPECT_EQ(drawn(), "");
}

TEST_F(ProgressLineTest, ClearsTheLineWhenTheJobEnds)
{
    const ProgressLine line(err_, 80, kAtOnce);
    say(kMsgShowMessage, "Sorting...");
    post(0, 1);
    const auto width = drawn().size() - std::string("\rSorting...").size() - 1;

    say(kMsgFinished, "finding");

    EXPECT_EQ(drawn(), "\r" + std::string(width, ' ') + "\r");
}

TEST_F(ProgressLineTest, ClearsTheLineAndStopsListeningWhenDestroyed)
{
    std::optional<ProgressLine> line(std::in_place, err_, 80, kAtOnce);
    say(kMsgShowMessage, "Sorting...");
    drawn();

    line.reset();

    EXPECT_EQ(drawn(), "\r          \r");
    say(kMsgShowMessage, "Sorting...");
    post(0, 1);
    EXPECT_EQ(drawn(), "");
}

TEST_F(ProgressLineTest, ShowsNothingOfAShortJob)
{
    {
        const ProgressLine line(err_, 80, std::chrono::hours(1));
        say(kMsgShowMessage, "Sorting...");
        post(1, 4);
        say(kMsgFinished, "finding");
    }
    EXPECT_EQ(drawn(), "");
}

TEST_F(ProgressLineTest, ShowsAJobThatIsBusyWithoutPostingAnything)
{
    FlushedStream stream;
    std::ostream err(&stream);
    const ProgressLine line(err, 80, std::chrono::milliseconds(1));

    say(kMsgShowMessage, "Loading...");
    stream.waitForFlush();
    post(1, 2);

    EXPECT_TRUE(stream.str().starts_with("\rLoading...\rLoading... [####")) << stream.str();
}

TEST_F(ProgressLineTest, NeverFillsTheLastColumn)
{
    for (std::size_t width = 0; width < 70; ++width) {
        const ProgressLine line(err_, width, kAtOnce);
        say(kMsgShowMessage, "Finding duplicated contacts...");
        for (int i = 0; i < 10; ++i) {
            post(i, 10);
        }
        std::istringstream lines(drawn());
        for (std::string each; std::getline(lines, each, '\r');) {
            EXPECT_LT(each.size(), std::max<std::size_t>(width, 1)) << width;
        }
    }
}

}  // namespace
}  // namespace dunmora::test
