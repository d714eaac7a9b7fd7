#include "programs/dunmora-cli/ProgressLine.h"

#include "base/NotificationCenter.h"
#include "programs/dunmora-cli/TerminalText.h"
#include "text/DisplayText.h"

#include <algorithm>
#include <ostream>

namespace dunmora {

namespace {

constexpr std::size_t kLongestBar = 40;
// A blank, the brackets, a blank and "100%".
constexpr std::size_t kBarFrame = 8;

}  // namespace

ProgressLine::ProgressLine(std::ostream& err, std::size_t width, std::chrono::milliseconds delay)
    : err_(err), width_(width), delay_(delay)
{
    if (delay_.count() > 0) {
        timer_ = std::thread([this] { showWhenDue(); });
    }
    auto& center = NotificationCenter::defaultCenter();
    center.addObserver(this, kMsgShowMessage,
                       [this](const Notification& each) { showMessage(each.text()); });
    center.addObserver(this, kMsgProgress,
                       [this](const Notification& each) { showProgress(each.progress()); });
    center.addObserver(this, kMsgFinished, [this](const Notification& /*each*/) { endJob(); });
}

ProgressLine::~ProgressLine()
{
    auto& center = NotificationCenter::defaultCenter();
    for (const auto name : {kMsgShowMessage, kMsgProgress, kMsgFinished}) {
        center.removeObserver(this, name);
    }
    endJob();
    if (timer_.joinable()) {
        {
            const std::lock_guard lock(mutex_);
            isClosing_ = true;
        }
        changed_.notify_all();
        timer_.join();
    }
}

void ProgressLine::showMessage(std::string_view text)
{
    const std::lock_guard lock(mutex_);
    clear();
    message_ = displayText(text);
    if (!due_) {
        due_ = Clock::now() + delay_;
        isVisible_ = delay_.count() == 0;
        changed_.notify_all();
    }
    if (isVisible_) {
        draw(message_);
    }
}

void ProgressLine::showWhenDue()
{
    std::unique_lock lock(mutex_);
    while (!isClosing_) {
        if (!due_ || isVisible_) {
            changed_.wait(lock);
        } else if (const auto due = *due_; Clock::now() < due) {
            changed_.wait_until(lock, due);
        } else {
            isVisible_ = true;
            draw(message_);
        }
    }
}

void ProgressLine::endJob()
{
    const std::lock_guard lock(mutex_);
    clear();
    due_.reset();
    isVisible_ = false;
}

void ProgressLine::showProgress(const Progress& progress)
{
    const std::lock_guard lock(mutex_);
    if (progress.total <= 0 || !isVisible_) {
        return;
    }
    // A deletion counts in steps of two and ends beyond its total.
    const auto percent =
        std::clamp<std::int64_t>(std::int64_t{progress.current} * 100 / progress.total, 0, 100);
    // Redraws only when the percentage changes, however many people there are.
    if (percent == drawnPercent_) {
        return;
    }
    drawnPercent_ = percent;
    const auto taken = displayWidth(message_) + kBarFrame;
    if (taken >= width_) {
        return;
    }
    const auto length = std::min(kLongestBar, width_ - taken - 1);
    const auto done = length * static_cast<std::size_t>(percent) / 100;
    const auto number = std::to_string(percent);
    draw(message_ + " [" + std::string(done, '#') + std::string(length - done, '.') + "] " +
         std::string(3 - number.size(), ' ') + number + '%');
}

void ProgressLine::draw(const std::string& line)
{
    // A wrapped line could not be overwritten.
    if (displayWidth(line) >= width_) {
        return;
    }
    err_ << '\r' << line << std::flush;
    drawnWidth_ = displayWidth(line);
}

void ProgressLine::clear()
{
    if (drawnWidth_ > 0) {
        err_ << '\r' << std::string(drawnWidth_, ' ') << '\r' << std::flush;
    }
    drawnWidth_ = 0;
    drawnPercent_ = -1;
}

}  // namespace dunmora
