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

/// Measures how long events wait for the main thread's event loop. A thread posts an event about
/// every millisecond, after the previous one was handled.
class EventLoopWatch final : public QObject {
public:
    using Milliseconds = std::chrono::duration<double, std::milli>;

    /// The measurements of one stage.
    struct Stage {
        Milliseconds lasted{};
        /// The longest time that an event waited.
        Milliseconds longestGap{};
        /// The most processor time that the main thread used while an event waited. The rest of the
        /// gap was waiting for a processor.
        Milliseconds longestWork{};
    };

    /// Thread: the main thread.
    EventLoopWatch();
    ~EventLoopWatch() override;
    EventLoopWatch(const EventLoopWatch&) = delete;
    EventLoopWatch& operator=(const EventLoopWatch&) = delete;

    /// Begins a stage: events that are waiting or posted from now on count for it. Thread: any.
    void begin(const std::string& stage);

    /// Ends the current stage. Thread: any.
    void end() { begin({}); }

    /// The measurements of this stage so far. Thread: any.
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

    // Last, because it uses all of the above.
    std::jthread thread_;
};

}  // namespace dunmora::bench
