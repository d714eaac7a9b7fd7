#include "adapters/qt/QtWindow.h"

#include "adapters/qt/ModalSessions.h"
#include "adapters/qt/OneLineText.h"
#include "adapters/qt/WindowPlacement.h"

#include <QEvent>
#include <QKeyEvent>
#include <QWidget>

#include <utility>

namespace dunmora {

namespace {

/// Listed explicitly: without CustomizeWindowHint a title bar comes with a close control.
constexpr auto kFloatingFlags =
    Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowDoesNotAcceptFocus;

Qt::WindowFlags flagsOf(WindowLevel level)
{
    switch (level) {
    case WindowLevel::Floating:
        return kFloatingFlags;
    case WindowLevel::Status:
        return Qt::Dialog | Qt::WindowStaysOnTopHint;
    case WindowLevel::Normal:
        break;
    }
    return Qt::Window;
}

bool isEscape(QEvent& event)
{
    return event.type() == QEvent::KeyPress &&
           static_cast<QKeyEvent&>(event).matches(QKeySequence::Cancel);
}

}  // namespace

QtWindow::QtWindow(QWidget& widget, ModalSessions& sessions, CloseRequest onCloseRequest)
    : widget_(widget), sessions_(sessions), onCloseRequest_(std::move(onCloseRequest))
{
    widget_.installEventFilter(this);
}

void QtWindow::setTitle(const std::string& title)
{
    // Qt replaces "[*]" with its mark for modified documents, unless it is doubled.
    widget_.setWindowTitle(
        oneLineText(title).replace(QLatin1String("[*]"), QLatin1String("[*][*]")));
}

void QtWindow::setLevel(WindowLevel level)
{
    level_ = level;
    const bool wasVisible = widget_.isVisible();
    // Changing the flags hides the window.
    widget_.setWindowFlags(flagsOf(level));
    if (wasVisible) {
        show(KeyboardFocus::Leave);
    }
}

void QtWindow::show(KeyboardFocus focus)
{
    widget_.setAttribute(Qt::WA_ShowWithoutActivating,
                         focus == KeyboardFocus::Leave || level_ == WindowLevel::Floating);
    showAboveMainWindow(widget_, lastPlace_);
}

void QtWindow::close()
{
    isClosing_ = true;
    widget_.close();
    isClosing_ = false;
}

bool QtWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != &widget_) {
        return false;
    }
    if (event->type() == QEvent::Close) {
        return handleClose(*event);
    }
    if (onCloseRequest_ && isEscape(*event)) {
        onCloseRequest_();
        return true;
    }
    return false;
}

/// Returns whether the event has been consumed.
bool QtWindow::handleClose(QEvent& event)
{
    if (!isClosing_ && onCloseRequest_) {
        event.ignore();
        onCloseRequest_();
        return true;
    }
    if (!isClosing_ && level_ == WindowLevel::Floating) {
        // It has no close control, but window managers offer other ways to close.
        event.ignore();
        return true;
    }
    if (widget_.isVisible()) {
        lastPlace_ = widget_.pos();
    }
    if (widget_.isActiveWindow()) {
        sessions_.passFocusOn(widget_);
    }
    if (delegate_ != nullptr) {
        delegate_->windowWillClose();
    }
    return false;
}

}  // namespace dunmora
