#include "adapters/qt/Redraw.h"

#include <QCoreApplication>
#include <QEvent>

#include <utility>

namespace dunmora {

namespace {

constexpr qint64 kFrameMilliseconds = 16;
constexpr auto kRequested = QEvent::User;

}  // namespace

Redraw::Redraw(std::function<void()> draw) : draw_(std::move(draw)) {}

void Redraw::request()
{
    // Both sides exchange, even when the value stays the same: that orders the writes before the
    // request before the reads of the redraw.
    if (!isRequested_.exchange(true, std::memory_order_acq_rel)) {
        QCoreApplication::postEvent(this, new QEvent(kRequested));
    }
}

bool Redraw::event(QEvent* event)
{
    if (event->type() == kRequested) {
        schedule();
        return true;
    }
    if (event->type() == QEvent::Timer) {
        nextFrame_.stop();
        draw();
        return true;
    }
    return QObject::event(event);
}

void Redraw::schedule()
{
    const auto elapsed = sinceDrawn_.isValid() ? sinceDrawn_.elapsed() : kFrameMilliseconds;
    if (elapsed >= kFrameMilliseconds) {
        draw();
    } else {
        nextFrame_.start(static_cast<int>(kFrameMilliseconds - elapsed), Qt::PreciseTimer, this);
    }
}

void Redraw::draw()
{
    isRequested_.exchange(false, std::memory_order_acq_rel);
    draw_();
    sinceDrawn_.start();
}

}  // namespace dunmora
