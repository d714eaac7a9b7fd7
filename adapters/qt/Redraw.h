#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>

#include <atomic>
#include <functional>

namespace dunmora {

/// Redraws something on the main thread when any thread requests it. Requests are merged, to about
/// sixty redraws a second at most; a redraw always follows the last request.
///
/// Thread: created and destroyed on the main thread.
class Redraw final : public QObject {
public:
    /// `draw` runs on the main thread and sees everything written before the request.
    explicit Redraw(std::function<void()> draw);

    /// Thread: any, several at once; never waits for the main thread.
    void request();

protected:
    bool event(QEvent* event) override;

private:
    void schedule();
    void draw();

    std::function<void()> draw_;
    std::atomic<bool> isRequested_{false};
    QElapsedTimer sinceDrawn_;
    QBasicTimer nextFrame_;
};

}  // namespace dunmora
