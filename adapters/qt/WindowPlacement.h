#pragma once

class QWidget;

namespace dunmora {

/// The window that all others belong to; none before it is made.
/// Thread: the main thread.
QWidget* mainWindow();

/// Puts a window on the screen above the main one, in its middle, and keeps it above. A window that
/// takes the keyboard gets it.
/// Thread: the main thread.
void showAboveMainWindow(QWidget& window);

}  // namespace dunmora
