#pragma once

#include "adapters/eds/module/GlibError.h"

#include <libebook/libebook.h>

#include <memory>
#include <string>

namespace dunmora {

/// Where a book's people are kept: "local", "carddav", ...
std::string kindOf(ESource& source);

/// Whether the book is on a server, of which the desktop keeps a copy.
bool isOnServer(ESource& source);

/// Opens a book. Fails when its server cannot be reached: the service would then use its copy,
/// which is as old as the last contact, and would queue a removal and carry it out later, whatever
/// the server holds by then. Thread: one with its own main context. Errors: null, and `error`.
std::shared_ptr<EClient> connectTo(ESource& source, GCancellable* cancellable, GlibError& error);

/// Whether the service passes calls on to the book itself, and not to its copy.
bool isServed(ESource& source, GCancellable* cancellable);

}  // namespace dunmora
