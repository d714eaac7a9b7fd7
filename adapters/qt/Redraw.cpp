#include "adapters/qt/Redraw.h"

#include <QCoreApplication>
#include <QEvent>

#include <utility>

namespace dunmora {

namespace {

constexpr qint64 kFrameMilliseconds = 16;
constexpr auto kAsked = QEvent::User;

}  // namespace

Redraw::Redraw(std::function<void()> draw) : draw_(std::move(draw)) {}

void Redraw::ask()
{
    // An exchange on both sides, even when nothing changes: it orders what was written before the
    // wish before what the drawing reads, whoever comes first.
    if (!isAsked_.exchange(true, std::memory_order_acq_rel)) {
        QCoreApplication::postEvent(this, new QEvent(kAsked));
    }
}

bool Redraw::event(QEvent* event)
{
    if (event->type() == kAsked) {
        drawSoon();
        return true;
    }
    if (event->type() == QEvent::Timer) {
        nextFrame_.stop();
        draw();
        return true;
    }
    return QObject::event(event);
}

void Redraw::drawSoon()
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
    isAsked_.exchange(false, std::memory_order_acq_rel);
    draw_();
    sinceDrawn_.start();
}

}  // namespace dunmora
