#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <chrono>
#include <vector>

class QEvent;

namespace dunmora {

/// Runs windows that the user has to deal with before anything else. Qt's own modality does not
/// fit: it discards close requests for the windows that it blocks, while the main window can always
/// be closed. A session's window is therefore an ordinary one, and an event filter keeps the user's
/// input from the others.
///
/// Thread: the main thread. Errors: none.
class ModalSessions final : public QObject {
public:
    /// How long the keyboard focus may take to settle after a session ends; longer than the tenth
    /// of a second after which Qt considers the focus lost.
    static constexpr std::chrono::milliseconds kFocusDelay{250};

    /// A QApplication must exist: its events pass through this filter first.
    ModalSessions();
    ~ModalSessions() override;
    ModalSessions(const ModalSessions&) = delete;
    ModalSessions& operator=(const ModalSessions&) = delete;

    /// Shows the window above the main window and handles events until `end`, blocking the user's
    /// input to every other window. Sessions nest. The window stays open afterwards.
    void run(QWidget& window);

    /// Like `run`, but keeps the window hidden until the user clicks a blocked window or presses
    /// Escape in one. It is for a session in another program's window.
    void runHidden(QWidget& window);

    /// Ends the innermost session, if any.
    void end();

    /// Ends the session of this window, if any. Its `run` returns once the sessions nested in it
    /// have ended, too.
    void end(const QWidget& window);

    /// Whether the user's input to the widget is blocked. A window with the dynamic property
    /// `alwaysUsable` never is: it is independent of the current job.
    bool blocks(const QWidget& widget) const;

    /// The parent for a new window: the visible one of the innermost session, otherwise the main
    /// window; null before there is one.
    QWidget* front() const;

    /// Activates the window at the front, if the user was working in this one, which is about to
    /// close: some window managers would give the focus to the window that was shown last, even if
    /// it was shown without the focus.
    void passFocusOn(const QWidget& window) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Session;
    enum class Start { Shown, Hidden };

    void run(QWidget& window, Start start);
    void endAt(std::vector<Session*>::iterator position);
    void releaseMouse(const QWidget& window);
    void regainFocus() const;

    std::vector<Session*> running_;
    // The widget under the mouse button that is currently pressed.
    QPointer<QWidget> pressed_;
};

}  // namespace dunmora
