#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <vector>

class QEvent;

namespace dunmora {

/// Runs windows that the user has to deal with before anything else. Qt's own modality is of no use
/// here: it throws away the close requests of the windows that it blocks, and the main window can
/// always be closed. So a session's window is an ordinary one, and what is kept from the others is
/// the user's input.
///
/// Thread: the main thread. Errors: none.
class ModalSessions final : public QObject {
public:
    /// The application must exist. It sees every event before its receiver.
    ModalSessions();
    ~ModalSessions() override;
    ModalSessions(const ModalSessions&) = delete;
    ModalSessions& operator=(const ModalSessions&) = delete;

    /// Shows the window above the main one and handles events until `end`, with the user's input
    /// kept from every other window. Sessions nest. The window stays on the screen afterwards.
    void run(QWidget& window);

    /// Ends the innermost session; without one it does nothing.
    void end();

    /// Ends the session of this window, which goes on waiting while one runs inside it; without one
    /// it does nothing.
    void end(const QWidget& window);

    /// Whether the user's input is kept from a widget. It never is from a window with the dynamic
    /// property `alwaysUsable`, which has nothing to do with the work in hand.
    bool blocks(const QWidget& widget) const;

    /// The window that a new one belongs to: that of the innermost session, else the main one;
    /// none before there is one.
    QWidget* front() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Session;

    void endAt(std::vector<Session*>::iterator position);
    void letGo(const QWidget& window);
    void regainKeyboard() const;

    std::vector<Session*> running_;
    // Where a button of the mouse went down and has not come up yet.
    QPointer<QWidget> pressed_;
};

}  // namespace dunmora
