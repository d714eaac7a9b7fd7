#include "adapters/eds/module/SessionBus.h"

#include "adapters/eds/module/GlibOwned.h"

#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace dunmora {

namespace {

/// Whether this method of the bus lists the service that describes address books. The service's
/// name ends in the version of its interface.
bool isListedBy(GDBusConnection& bus, const char* method, GCancellable* cancellable)
{
    GlibError error;
    const auto reply = owned(g_dbus_connection_call_sync(
        &bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
        nullptr, G_VARIANT_TYPE("(as)"), G_DBUS_CALL_FLAGS_NONE, -1, cancellable, error.place()));
    if (!reply) {
        return false;
    }
    const auto names = owned(g_variant_get_child_value(reply.get(), 0));
    for (gsize i = 0; i < g_variant_n_children(names.get()); ++i) {
        const auto name = owned(g_variant_get_child_value(names.get(), i));
        if (std::string_view(g_variant_get_string(name.get(), nullptr))
                .starts_with("org.gnome.evolution.dataserver.Sources")) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool hasSessionBus()
{
    // NOLINTBEGIN(concurrency-mt-unsafe): the programs never change the environment
    const char* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    // NOLINTEND(concurrency-mt-unsafe)
    std::error_code error;
    return (address != nullptr && *address != '\0') ||
           (folder != nullptr &&
            std::filesystem::exists(std::filesystem::path(folder) / "bus", error));
}

std::shared_ptr<GDBusConnection> connectToBus(GCancellable* cancellable, GlibError& error)
{
    auto bus = owned(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, error.place()));
    if (!bus) {
        return nullptr;
    }
    // The process would end with the bus, in the middle of a deletion.
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    if (g_dbus_connection_is_closed(bus.get()) != FALSE) {
        // The libraries above would use it all the same, and print warnings.
        g_set_error_literal(error.place(), G_IO_ERROR, G_IO_ERROR_CLOSED, "");
        return nullptr;
    }
    return bus;
}

bool isServiceRunning(GDBusConnection& bus, GCancellable* cancellable)
{
    return isListedBy(bus, "ListNames", cancellable);
}

bool canStartService(GDBusConnection& bus, GCancellable* cancellable)
{
    return isServiceRunning(bus, cancellable) ||
           isListedBy(bus, "ListActivatableNames", cancellable);
}

}  // namespace dunmora
