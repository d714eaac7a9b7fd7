#pragma once

#include <QObject>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <ctime>
#include <map>
#include <mutex>
#include <string>
#include <thread>

namespace dunmora::bench {

/// Measures how long whatever comes to the main thread's event loop has to wait there: a thread of
/// its own posts an event about every millisecond, when the one before has been handled.
class EventLoopWatch final : public QObject {
public:
    using Milliseconds = std::chrono::duration<double, std::milli>;

    /// What was seen while one stage lasted.
    struct Stage {
        Milliseconds lasted{};
        /// The longest that an event waited.
        Milliseconds longestGap{};
        /// The most processor time that the main thread took while an event waited: what is left of
        /// the gap when other programs have the processor, too.
        Milliseconds longestWork{};
    };

    /// Thread: the main thread.
    EventLoopWatch();
    ~EventLoopWatch() override;
    EventLoopWatch(const EventLoopWatch&) = delete;
    EventLoopWatch& operator=(const EventLoopWatch&) = delete;

    /// What waits from now on counts for this stage. Thread: any.
    void begin(const std::string& stage);

    /// Ends the stage that was begun last. Thread: any.
    void end() { begin({}); }

    /// What was seen in the stage so far. Thread: any.
    Stage seenIn(const std::string& stage) const;

protected:
    bool event(QEvent* event) override;

private:
    using Clock = std::chrono::steady_clock;

    void run(const std::stop_token& stopped);
    Milliseconds processorTime() const;

    clockid_t mainThreadClock_{};

    mutable std::mutex mutex_;
    std::condition_variable_any handled_;
    bool waits_ = false;
    Clock::time_point sentAt_;
    Milliseconds processorTimeWhenSent_{};
    std::string stage_;
    Clock::time_point stageBegan_;
    std::map<std::string, Stage> seen_;

    // Uses all of the above.
    std::jthread thread_;
};

}  // namespace dunmora::bench
