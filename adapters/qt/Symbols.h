#pragma once

#include <QIcon>
#include <QString>

namespace dunmora {

/// One of our own icons, for desktops whose theme has none: line drawings in the text colour of the
/// current palette ("about", "close", "delete", "different", "find", "open", "quit", "reload",
/// "same"), and signs in fixed colours ("doubt", "information", "loss", "only"). It is sharp at any
/// size and pixel ratio, and follows changes of the palette.
///
/// Thread: the main thread. Errors: std::logic_error for any other name.
QIcon symbolIcon(const QString& name);

}  // namespace dunmora
