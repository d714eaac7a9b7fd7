#pragma once

#include <QTimer>

#include <cstddef>
#include <functional>

namespace dunmora {

/// Runs a loop over many rows a few milliseconds at a time, so that the user can go on working.
///
/// Thread: the main thread. Errors: none.
class SlicedLoop final {
public:
    using Body = std::function<void(std::size_t index)>;

    SlicedLoop();

    /// Calls `body` with 0 to `count` - 1, then `end`: the first ones now, the others from the
    /// event loop. Cancels a loop that is running.
    void start(std::size_t count, Body body, std::function<void()> end);
    /// Runs the rest of the running loop now, if there is one.
    void finish();
    /// Ends the running loop without calling its `end`.
    void cancel();
    bool isRunning() const { return body_ != nullptr; }

private:
    enum class Until { NextSlice, End };

    void proceed(Until until);

    std::size_t count_ = 0;
    std::size_t next_ = 0;
    /// Null while no loop is running.
    Body body_;
    std::function<void()> end_;
    QTimer turn_;
};

}  // namespace dunmora
