#include "adapters/qt/QtWindow.h"

#include "adapters/qt/OneLineText.h"
#include "adapters/qt/WindowPlacement.h"

#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QWidget>

#include <algorithm>
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

/// Whether the user is working in a dialog or another program rather than the main window or this
/// one.
bool isUserElsewhere(const QWidget& window)
{
    // A dialog that was just shown counts even before it gets the keyboard focus.
    const auto windows = QApplication::topLevelWidgets();
    const auto* const main = mainWindow();
    return QGuiApplication::applicationState() != Qt::ApplicationActive ||
           std::any_of(windows.begin(), windows.end(), [&](const QWidget* other) {
               return other != &window && other != main && other->isVisible() &&
                      !other->testAttribute(Qt::WA_ShowWithoutActivating);
           });
}

bool isEscape(QEvent& event)
{
    return event.type() == QEvent::KeyPress &&
           static_cast<QKeyEvent&>(event).matches(QKeySequence::Cancel);
}

}  // namespace

QtWindow::QtWindow(QWidget& widget, CloseRequest onCloseRequest)
    : widget_(widget), onCloseRequest_(std::move(onCloseRequest))
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
    widget_.setAttribute(Qt::WA_ShowWithoutActivating, level == WindowLevel::Floating);
    // Changing the flags hides the window.
    widget_.setWindowFlags(flagsOf(level));
    if (wasVisible) {
        show();
    }
}

void QtWindow::show()
{
    if (level_ == WindowLevel::Status) {
        // The user did not open it: the next key press is meant for the focused window.
        widget_.setAttribute(Qt::WA_ShowWithoutActivating, isUserElsewhere(widget_));
    }
    showAboveMainWindow(widget_);
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
    if (delegate_ != nullptr) {
        delegate_->windowWillClose();
    }
    return false;
}

}  // namespace dunmora
