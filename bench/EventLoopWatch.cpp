#include "bench/EventLoopWatch.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>

#include <pthread.h>

namespace dunmora::bench {

namespace {

constexpr auto kPing = QEvent::User;
constexpr std::chrono::milliseconds kBetweenPings{1};

}  // namespace

EventLoopWatch::EventLoopWatch() : stageBegan_(Clock::now())
{
    ::pthread_getcpuclockid(::pthread_self(), &mainThreadClock_);
    thread_ = std::jthread([this](const std::stop_token& stopped) { run(stopped); });
}

EventLoopWatch::~EventLoopWatch() = default;

void EventLoopWatch::begin(const std::string& stage)
{
    const std::lock_guard guard(mutex_);
    const auto now = Clock::now();
    seen_[stage_].lasted += now - stageBegan_;
    stage_ = stage;
    stageBegan_ = now;
}

EventLoopWatch::Stage EventLoopWatch::seenIn(const std::string& stage) const
{
    const std::lock_guard guard(mutex_);
    const auto found = seen_.find(stage);
    return found == seen_.end() ? Stage() : found->second;
}

bool EventLoopWatch::event(QEvent* event)
{
    if (event->type() != kPing) {
        return QObject::event(event);
    }
    const std::lock_guard guard(mutex_);
    // If a new stage began while the event waited, the wait counts for the new stage.
    auto& seen = seen_[stage_];
    seen.longestGap = std::max<Milliseconds>(seen.longestGap, Clock::now() - sentAt_);
    seen.longestWork = std::max(seen.longestWork, processorTime() - processorTimeWhenSent_);
    waits_ = false;
    handled_.notify_one();
    return true;
}

void EventLoopWatch::run(const std::stop_token& stopped)
{
    std::unique_lock lock(mutex_);
    while (!stopped.stop_requested()) {
        sentAt_ = Clock::now();
        processorTimeWhenSent_ = processorTime();
        waits_ = true;
        lock.unlock();
        QCoreApplication::postEvent(this, new QEvent(kPing));
        lock.lock();
        handled_.wait(lock, stopped, [this] { return !waits_; });
        handled_.wait_for(lock, stopped, kBetweenPings, [] { return false; });
    }
}

EventLoopWatch::Milliseconds EventLoopWatch::processorTime() const
{
    timespec time{};
    ::clock_gettime(mainThreadClock_, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace dunmora::bench
