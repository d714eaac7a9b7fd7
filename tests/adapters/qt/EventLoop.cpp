#include "tests/adapters/qt/EventLoop.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QTimer>

#include <chrono>
#include <stdexcept>

namespace dunmora::test {

void handleEventsUntil(const std::function<bool()>& condition)
{
    const QDeadlineTimer deadline(std::chrono::seconds(20));
    // A change by another thread posts no event, so check regularly.
    QTimer wakeUp;
    wakeUp.start(std::chrono::milliseconds(1));
    while (!condition()) {
        if (deadline.hasExpired()) {
            throw std::runtime_error("what the test waits for does not happen");
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

void handleEvents()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

}  // namespace dunmora::test
