#include "adapters/qt/QtApplication.h"

#include "adapters/posix/ProcessShutdown.h"
#include "adapters/qt/QtWindow.h"

#include <QApplication>
#include <QEvent>
#include <QThread>

#include <cstdlib>
#include <exception>
#include <thread>
#include <utility>

namespace dunmora {

namespace {

/// Ends the process when its thread calls exit, before any other object is destroyed.
class EndBeforeExit final {
public:
    EndBeforeExit() = default;
    ~EndBeforeExit() { exitProcess(EXIT_SUCCESS); }
    EndBeforeExit(const EndBeforeExit&) = delete;
    EndBeforeExit& operator=(const EndBeforeExit&) = delete;
};

}  // namespace

QtApplication::QtApplication(QApplication& application) : application_(application)
{
    // The main window's delegate decides what closing it means.
    QApplication::setQuitOnLastWindowClosed(false);
    application_.installEventFilter(this);
}

void QtApplication::run(ApplicationDelegate& delegate)
{
    // When the display connection breaks, Qt calls exit, which would destroy objects that other
    // threads still use, and wait for some of those threads. Thread-local objects are destroyed
    // first; an atexit function would run after those registered later.
    static thread_local const EndBeforeExit endBeforeExit;
    const auto reportState = [&delegate](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive) {
            delegate.applicationDidBecomeActive();
        }
    };
    connect(&application_, &QGuiApplication::applicationStateChanged, this, reportState);
    delegate.applicationDidFinishLaunching();
    // An alert before the launch may have activated the application already.
    reportState(QGuiApplication::applicationState());
    QApplication::exec();
    exitProcess(EXIT_SUCCESS);
}

void QtApplication::terminate(const void* /*sender*/)
{
    exitProcess(EXIT_SUCCESS);
}

int QtApplication::runModalForWindow(Window& window)
{
    // Every Window comes from this adapter's interfaces.
    sessions_.run(static_cast<QtWindow&>(window).widget());
    return kRunAborted;
}

void QtApplication::abortModal()
{
    sessions_.end();
}

void QtApplication::detachNewThread(std::string_view /*name*/, std::function<void()> body)
{
    std::thread(std::move(body)).detach();
}

void QtApplication::performOnMainThread(const std::function<void()>& work)
{
    if (QThread::currentThread() == application_.thread()) {
        work();
        return;
    }
    std::exception_ptr failure;
    // No exception may cross Qt's event loop.
    const auto guarded = [&] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
    };
    QMetaObject::invokeMethod(&application_, guarded, Qt::BlockingQueuedConnection);
    if (failure) {
        std::rethrow_exception(failure);
    }
}

bool QtApplication::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == &application_ && event->type() == QEvent::Quit) {
        exitProcess(EXIT_SUCCESS);
    }
    return false;
}

}  // namespace dunmora
