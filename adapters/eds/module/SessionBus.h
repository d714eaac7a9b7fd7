#pragma once

#include "adapters/eds/module/GlibError.h"

#include <gio/gio.h>

#include <memory>

namespace dunmora {

/// Whether the user has a session bus. Does not connect: GLib could start a bus to do so.
bool hasSessionBus();

/// Connects to the session bus. Errors: null, and `error`.
std::shared_ptr<GDBusConnection> connectToBus(GCancellable* cancellable, GlibError& error);

/// Whether Evolution Data Server runs.
bool isServiceRunning(GDBusConnection& bus, GCancellable* cancellable);

/// Whether Evolution Data Server runs or the bus can start it.
bool canStartService(GDBusConnection& bus, GCancellable* cancellable);

}  // namespace dunmora
