#pragma once

#include <QIcon>
#include <QString>

namespace dunmora {

/// A line drawing in the colour of the texts, or a sign in its own colours, for where the desktop
/// has no icon of its own: "about", "close", "delete", "find", "open", "quit", "reload"; "doubt",
/// "information", "loss". It is sharp in every size.
///
/// Thread: the main thread. Errors: std::logic_error for any other name.
QIcon symbolIcon(const QString& name);

}  // namespace dunmora
