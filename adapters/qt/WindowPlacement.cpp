#include "adapters/qt/WindowPlacement.h"

#include "adapters/qt/QtText.h"
#include "adapters/qt/ScreenFit.h"
#include "text/WindowTitle.h"

#include <QApplication>
#include <QGuiApplication>
#include <QMainWindow>
#include <QScreen>
#include <QWindow>

#include <algorithm>

namespace dunmora {

namespace {

/// Otherwise Qt appends the program's name, after another dash than ours.
void nameProgramIn(QWidget& window)
{
    const auto title = window.windowTitle();
    const auto program = QGuiApplication::applicationDisplayName();
    if (!title.isEmpty() && !title.endsWith(program)) {
        window.setWindowTitle(toQString(windowTitle(title.toStdString(), program.toStdString())));
    }
}

/// The position at which the window fits on the screen that it was left on, if that still exists.
QPoint placeAgain(const QWidget& window, const QWidget& below, QPoint lastPlace)
{
    const QRect place(lastPlace, window.frameSize());
    const auto* const screen = QGuiApplication::screenAt(place.center());
    return movedInto((screen == nullptr ? below.screen() : screen)->availableGeometry(), place)
        .topLeft();
}

QPoint firstPlace(const QWidget& window, const QWidget& below)
{
    QRect place(QPoint(), window.size());
    if (window.windowFlags().testFlag(Qt::WindowStaysOnTopHint)) {
        // In the middle it would cover dialogs.
        place.moveTopRight(below.frameGeometry().topRight());
    } else {
        place.moveCenter(below.frameGeometry().center());
    }
    return movedInto(below.screen()->availableGeometry(), place).topLeft();
}

void placeAbove(QWidget& window, const QWidget& below, std::optional<QPoint> lastPlace)
{
    window.ensurePolished();
    if (!lastPlace && !window.property("initialColumns").isValid()) {
        window.adjustSize();
    }
    // Creates the native window, which the transient parent needs.
    window.winId();
    window.windowHandle()->setTransientParent(below.windowHandle());
    window.move(lastPlace ? placeAgain(window, below, *lastPlace) : firstPlace(window, below));
}

}  // namespace

QWidget* mainWindow()
{
    const auto windows = QApplication::topLevelWidgets();
    const auto found = std::find_if(windows.begin(), windows.end(), [](const QWidget* window) {
        return window->isVisible() && qobject_cast<const QMainWindow*>(window) != nullptr;
    });
    return found == windows.end() ? nullptr : *found;
}

QRect movedInto(const QRect& area, QRect place)
{
    place.moveLeft(std::max(area.left(), std::min(place.left(), area.right() - place.width() + 1)));
    place.moveTop(std::max(area.top(), std::min(place.top(), area.bottom() - place.height() + 1)));
    return place;
}

void showAboveMainWindow(QWidget& window, std::optional<QPoint> lastPlace)
{
    const auto* const below = mainWindow();
    nameProgramIn(window);
    if (!window.isVisible() && qobject_cast<QMainWindow*>(&window) == nullptr) {
        fitToScreen(window);
    }
    // Qt places windows that have a parent.
    if (!window.isVisible() && window.parentWidget() == nullptr && below != nullptr &&
        below != &window) {
        placeAbove(window, *below, lastPlace);
    }
    window.show();
    window.raise();
    if (!window.testAttribute(Qt::WA_ShowWithoutActivating)) {
        window.activateWindow();
    }
}

}  // namespace dunmora
