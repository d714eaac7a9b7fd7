#include "adapters/qt/QtApplication.h"

#include "adapters/qt/QtWindow.h"

#include <QApplication>
#include <QEvent>
#include <QThread>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <thread>
#include <utility>

namespace dunmora {

namespace {

/// Ends the process as it is: other threads may be in the middle of anything, so nothing that they
/// use is cleared away. Safe in a signal handler.
[[noreturn]] void endProcess()
{
    std::_Exit(EXIT_SUCCESS);
}

extern "C" void endBySignal(int /*signal*/)
{
    endProcess();
}

void endOnSignals()
{
    std::signal(SIGTERM, endBySignal);
    std::signal(SIGINT, endBySignal);
    // A program that was started to survive its terminal does.
    if (std::signal(SIGHUP, endBySignal) == SIG_IGN) {
        std::signal(SIGHUP, SIG_IGN);
    }
}

}  // namespace

QtApplication::QtApplication(QApplication& application) : application_(application)
{
    // The main window's delegate decides what its end means.
    QApplication::setQuitOnLastWindowClosed(false);
    application_.installEventFilter(this);
}

void QtApplication::run(ApplicationDelegate& delegate)
{
    endOnSignals();
    // A display that breaks away makes Qt leave by exit, which would take apart what the other
    // threads use.
    std::atexit([] { endProcess(); });
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
    endProcess();
}

void QtApplication::terminate(const void* /*sender*/)
{
    endProcess();
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
        endProcess();
    }
    return false;
}

}  // namespace dunmora
