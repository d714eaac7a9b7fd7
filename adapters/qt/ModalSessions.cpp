#include "adapters/qt/ModalSessions.h"

#include "adapters/posix/ProcessShutdown.h"
#include "adapters/qt/WindowPlacement.h"

#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace dunmora {

namespace {

bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::Enter:
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
    case QEvent::ContextMenu:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::NativeGesture:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
        return true;
    default:
        return false;
    }
}

bool isPress(QEvent::Type type)
{
    return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick;
}

bool isEscape(const QEvent& event)
{
    return event.type() == QEvent::KeyPress &&
           static_cast<const QKeyEvent&>(event).key() == Qt::Key_Escape;
}

bool isDrag(QEvent::Type type)
{
    return type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::Drop;
}

/// The widget that receives an object's input: for a shortcut's action, the widget that owns it.
const QWidget* widgetOf(const QObject* object)
{
    while (object != nullptr && !object->isWidgetType()) {
        object = object->parent();
    }
    return qobject_cast<const QWidget*>(object);
}

void closePopups()
{
    while (QWidget* popup = QApplication::activePopupWidget()) {
        popup->close();
    }
}

}  // namespace

struct ModalSessions::Session {
    explicit Session(QWidget& sessionWindow) : window(sessionWindow) {}

    QWidget& window;
    QEventLoop loop;
    bool isRunning = true;
};

ModalSessions::ModalSessions()
{
    QCoreApplication::instance()->installEventFilter(this);
}

ModalSessions::~ModalSessions() = default;

void ModalSessions::run(QWidget& window)
{
    run(window, Start::Shown);
}

void ModalSessions::runHidden(QWidget& window)
{
    run(window, Start::Hidden);
}

void ModalSessions::run(QWidget& window, Start start)
{
    closePopups();
    releaseMouse(window);
    Session session(window);
    running_.push_back(&session);
    if (start == Start::Shown) {
        showAboveMainWindow(window);
    }
    session.loop.exec();
    if (session.isRunning) {
        // All event loops are quitting: the process is about to end, and the user will never
        // respond to the session.
        exitProcess(EXIT_SUCCESS);
    }
    QTimer::singleShot(kFocusDelay, this, &ModalSessions::regainFocus);
}

/// If the user clicks a blocked window just as the session ends, the window manager may report the
/// focus of the clicked window to the session's window. When that closes, Qt considers the focus
/// lost until another window is activated.
void ModalSessions::regainFocus() const
{
    // If the focus had moved to another program, this one would not be active.
    const bool isLost = QGuiApplication::focusWindow() == nullptr &&
                        QGuiApplication::applicationState() == Qt::ApplicationActive;
    if (auto* const window = front(); isLost && window != nullptr) {
        window->activateWindow();
    }
}

void ModalSessions::end()
{
    if (!running_.empty()) {
        endAt(std::prev(running_.end()));
    }
}

void ModalSessions::end(const QWidget& window)
{
    const auto found = std::find_if(running_.begin(), running_.end(), [&](const auto* session) {
        return &session->window == &window;
    });
    if (found != running_.end()) {
        endAt(found);
    }
}

void ModalSessions::endAt(std::vector<Session*>::iterator position)
{
    auto& session = **position;
    running_.erase(position);
    session.isRunning = false;
    passFocusOn(session.window);
    session.loop.quit();
}

void ModalSessions::passFocusOn(const QWidget& window) const
{
    // A dialog may have been hidden just before its session ends: then no window is active.
    const auto* const active = QApplication::activeWindow();
    const bool hasFocus = QGuiApplication::applicationState() == Qt::ApplicationActive &&
                          (active == nullptr || active == &window);
    if (auto* const next = front(); hasFocus && next != nullptr && next != &window) {
        next->activateWindow();
    }
}

bool ModalSessions::blocks(const QWidget& widget) const
{
    if (running_.empty()) {
        return false;
    }
    for (const auto* at = &widget; at != nullptr; at = at->parentWidget()) {
        // A popup without a parent belongs to the session's window: run() closed all others.
        const bool isFreePopup = at->windowType() == Qt::Popup && at->parentWidget() == nullptr;
        const bool isAlwaysUsable = at->isWindow() && at->property("alwaysUsable").toBool();
        if (at == &running_.back()->window || isFreePopup || isAlwaysUsable) {
            return false;
        }
    }
    return true;
}

QWidget* ModalSessions::front() const
{
    const auto found = std::find_if(running_.rbegin(), running_.rend(), [](const auto* session) {
        return session->window.isVisible();
    });
    return found == running_.rend() ? mainWindow() : &(*found)->window;
}

bool ModalSessions::eventFilter(QObject* watched, QEvent* event)
{
    const auto type = event->type();
    if (!isInput(type)) {
        return false;
    }
    if (isPress(type) && watched->isWidgetType()) {
        pressed_ = qobject_cast<QWidget*>(watched);
    } else if (type == QEvent::MouseButtonRelease) {
        pressed_.clear();
    }
    const auto* const widget = widgetOf(watched);
    if (widget == nullptr || !blocks(*widget)) {
        return false;
    }
    if (type == QEvent::Shortcut && watched->property("alwaysUsable").toBool()) {
        return false;
    }
    auto& window = running_.back()->window;
    if (isPress(type) || (isEscape(*event) && !window.isVisible())) {
        showAboveMainWindow(window);
    }
    if (isDrag(type)) {
        event->ignore();
    }
    return true;
}

/// Releases the mouse button in a window that is about to be blocked: a scroll bar that never sees
/// the release would scroll forever.
void ModalSessions::releaseMouse(const QWidget& window)
{
    if (pressed_.isNull() || pressed_->window() == &window) {
        return;
    }
    // Outside every widget, so that nothing counts as clicked.
    const QPointF nowhere(-100000, -100000);
    QMouseEvent release(QEvent::MouseButtonRelease, nowhere, nowhere, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QCoreApplication::sendEvent(pressed_, &release);
}

}  // namespace dunmora
