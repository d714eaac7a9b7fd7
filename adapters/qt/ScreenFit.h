#pragma once

#include <QSize>

class QWidget;

namespace dunmora {

/// The part of its screen that a window may fill within its frame: an estimate, because the window
/// manager creates the frame only when it shows the window.
/// Thread: the main thread.
QSize spaceWithinFrame(const QWidget& window);

/// Keeps the contents of a main window from making it larger than its screen: they get less space
/// than they ask for.
/// Thread: the main thread.
void limitMinimumSize(QWidget& window);

/// Makes a dialog that is about to be shown no larger than its screen. Contents that need more
/// space scroll. Thread: the main thread.
void fitToScreen(QWidget& dialog);

/// Lets the menus of a window scroll when they are higher than its screen. Some styles would give
/// them a second column, which may be past the screen's edge.
/// Thread: the main thread.
void letMenusScroll(QWidget& window);

}  // namespace dunmora
