#pragma once

#include <QPoint>
#include <QRect>

#include <optional>

class QWidget;

namespace dunmora {

/// The visible main window, which all others belong to; null if there is none.
/// Thread: the main thread.
QWidget* mainWindow();

/// Moves the rectangle into the area; one that is too large starts at the top left corner.
/// Thread: any.
QRect movedInto(const QRect& area, QRect place);

/// Shows a window and keeps it above the main window: where the top left corner of its frame was,
/// or centred, or in the top right corner if it stays on top of every window; always on the screen.
/// Activates it unless it has the attribute Qt::WA_ShowWithoutActivating.
/// Thread: the main thread.
void showAboveMainWindow(QWidget& window, std::optional<QPoint> lastPlace = {});

}  // namespace dunmora
