#pragma once

#include <QIcon>
#include <QString>

namespace dunmora {

/// One of our own icons, for desktops whose theme has none: line drawings in the text colour of the
/// current palette ("about", "close", "delete", "find", "open", "quit", "reload"), and warning
/// signs in fixed colours ("doubt", "information", "loss"). It is sharp at any size and pixel
/// ratio, and follows changes of the palette.
///
/// Thread: the main thread. Errors: std::logic_error for any other name.
QIcon symbolIcon(const QString& name);

}  // namespace dunmora
