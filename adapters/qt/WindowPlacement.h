#pragma once

class QWidget;

namespace dunmora {

/// The window that all others belong to; none before it is made.
/// Thread: the main thread.
QWidget* mainWindow();

/// Puts a window on the screen above the main one and keeps it above: in its middle, or in its top
/// right corner one that stays above every window. It gets the keyboard unless it has the attribute
/// Qt::WA_ShowWithoutActivating.
/// Thread: the main thread.
void showAboveMainWindow(QWidget& window);

}  // namespace dunmora
