#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>

#include <atomic>
#include <functional>

namespace dunmora {

/// Carries the wish to draw something from any thread to the main one. Many wishes make one
/// drawing, about sixty a second at most; after the last wish there is always one more drawing.
///
/// Thread: made and destroyed on the main thread.
class Redraw final : public QObject {
public:
    /// `draw` runs on the main thread and sees all that was written before the wish.
    explicit Redraw(std::function<void()> draw);

    /// Thread: any, several at once; never waits for the main thread.
    void ask();

protected:
    bool event(QEvent* event) override;

private:
    void drawSoon();
    void draw();

    std::function<void()> draw_;
    std::atomic<bool> isAsked_{false};
    QElapsedTimer sinceDrawn_;
    QBasicTimer nextFrame_;
};

}  // namespace dunmora
