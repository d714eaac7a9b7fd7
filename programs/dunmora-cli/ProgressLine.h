#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

namespace dunmora {

struct Progress;

/// Shows the running job's message and progress on one line of a terminal, which it clears at the
/// end. A job that is over before the delay shows nothing. Observes the job notifications as long
/// as it lives. Thread: one job at a time, which must not use the terminal.
class ProgressLine final {
public:
    /// `width` is the number of the terminal's columns.
    ProgressLine(std::ostream& err, std::size_t width, std::chrono::milliseconds delay);
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine();

private:
    using Clock = std::chrono::steady_clock;

    void showMessage(std::string_view text);
    void showProgress(const Progress& progress);
    void endJob();
    void draw(const std::string& line);
    void clear();
    void showWhenDue();

    std::ostream& err_;
    std::size_t width_;
    std::chrono::milliseconds delay_;

    // Guards all below. A job can be busy for long before it posts anything, so another thread
    // shows its message.
    std::mutex mutex_;
    std::condition_variable changed_;
    // When the running job is shown; nullopt while none runs.
    std::optional<Clock::time_point> due_;
    bool isVisible_ = false;
    bool isClosing_ = false;
    std::string message_;
    std::int64_t drawnPercent_ = -1;
    std::size_t drawnWidth_ = 0;

    std::thread timer_;
};

}  // namespace dunmora
