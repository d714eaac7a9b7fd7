#pragma once

#include "adapters/qt/ModalSessions.h"
#include "platform/Application.h"

#include <QObject>

class QApplication;

namespace dunmora {

/// The running program on Qt's event loop.
///
/// Thread of what is not of the port: the main thread.
class QtApplication final : public QObject, public Application {
public:
    /// Qt's application must outlive it.
    explicit QtApplication(QApplication& application);

    /// Tells the delegate of the application's life and handles events until the process ends, with
    /// status 0: by `terminate`, by the desktop's wish (quitting, logging out) or because the
    /// display is gone.
    [[noreturn]] void run(ApplicationDelegate& delegate);

    ModalSessions& sessions() { return sessions_; }

    [[noreturn]] void terminate(const void* sender) override;
    int runModalForWindow(Window& window) override;
    void abortModal() override;
    void detachNewThread(std::string_view name, std::function<void()> body) override;
    void performOnMainThread(const std::function<void()>& work) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QApplication& application_;
    ModalSessions sessions_;
};

}  // namespace dunmora
