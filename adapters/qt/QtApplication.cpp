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

/// Ends the process when its thread leaves by exit, before anything else is taken apart.
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
    // The main window's delegate decides what its end means.
    QApplication::setQuitOnLastWindowClosed(false);
    application_.installEventFilter(this);
}

void QtApplication::run(ApplicationDelegate& delegate)
{
    // A display that breaks away makes Qt leave by exit, which would take apart what the other
    // threads use, and wait for some of them. What belongs to the thread goes first; a function for
    // atexit would come after what is made from now on.
    static thread_local const EndBeforeExit endBeforeExit;
    const auto tellActive = [&delegate](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive) {
            delegate.applicationDidBecomeActive();
        }
    };
    connect(&application_, &QGuiApplication::applicationStateChanged, this, tellActive);
    delegate.applicationDidFinishLaunching();
    // An alert before the launch may have made it active, and active is what it stays.
    tellActive(QGuiApplication::applicationState());
    QApplication::exec();
    exitProcess(EXIT_SUCCESS);
}

void QtApplication::terminate(const void* /*sender*/)
{
    exitProcess(EXIT_SUCCESS);
}

int QtApplication::runModalForWindow(Window& window)
{
    // There are no other windows: all come from this adapter's interfaces.
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
    // Nothing may be thrown through Qt's event loop.
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
