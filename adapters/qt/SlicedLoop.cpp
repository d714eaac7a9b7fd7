#include "adapters/qt/SlicedLoop.h"

#include <chrono>
#include <utility>

namespace dunmora {

namespace {

/// An eighth of the time between two frames of a screen: a frame may have to be drawn in the same
/// turn of the event loop, and what the loop has found may have to be shown.
constexpr std::chrono::milliseconds kSlice{2};
/// Takes far less than a slice.
constexpr std::size_t kRowsPerTimeCheck = 64;

}  // namespace

SlicedLoop::SlicedLoop()
{
    turn_.setInterval(0);
    QObject::connect(&turn_, &QTimer::timeout, &turn_, [this] { proceed(Until::NextSlice); });
}

void SlicedLoop::start(std::size_t count, Body body, std::function<void()> end)
{
    count_ = count;
    next_ = 0;
    body_ = std::move(body);
    end_ = std::move(end);
    proceed(Until::NextSlice);
}

void SlicedLoop::finish()
{
    if (isRunning()) {
        proceed(Until::End);
    }
}

void SlicedLoop::cancel()
{
    turn_.stop();
    body_ = nullptr;
    end_ = nullptr;
}

void SlicedLoop::proceed(Until until)
{
    const auto sliceEnd = std::chrono::steady_clock::now() + kSlice;
    while (next_ < count_) {
        body_(next_);
        ++next_;
        if (until == Until::NextSlice && next_ % kRowsPerTimeCheck == 0 &&
            std::chrono::steady_clock::now() >= sliceEnd) {
            turn_.start();
            return;
        }
    }
    const auto end = std::move(end_);
    cancel();
    end();
}

}  // namespace dunmora
