#pragma once

#include "adapters/qt/ModalSessions.h"
#include "platform/Application.h"

#include <QObject>

class QApplication;

namespace dunmora {

/// The running program on Qt's event loop.
///
/// Thread: the main thread, except where the port allows others.
class QtApplication final : public QObject, public Application {
public:
    /// `application` must outlive this object.
    explicit QtApplication(QApplication& application);

    /// Notifies the delegate and handles events until the process ends with status 0: through
    /// `terminate`, at the desktop's request (quitting, logging out) or because the display is
    /// gone.
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
