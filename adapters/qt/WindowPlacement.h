#pragma once

class QWidget;

namespace dunmora {

/// The visible main window, which all others belong to; null if there is none.
/// Thread: the main thread.
QWidget* mainWindow();

/// Shows a window and keeps it above the main window: centred, or in the top right corner if it
/// stays on top of every window. Activates it unless it has the attribute
/// Qt::WA_ShowWithoutActivating.
/// Thread: the main thread.
void showAboveMainWindow(QWidget& window);

}  // namespace dunmora
