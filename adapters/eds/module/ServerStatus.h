#pragma once

#include <libebook/libebook.h>

#include <memory>

namespace dunmora {

/// Whether the service is connected to the server behind a book. Each call asks the service,
/// because the library updates its copy in a main loop, and there is none here.
///
/// Thread: one with its own main context.
class ServerStatus final {
public:
    explicit ServerStatus(ESource& source);
    ~ServerStatus();
    ServerStatus(const ServerStatus&) = delete;
    ServerStatus& operator=(const ServerStatus&) = delete;

    bool isConnected(GCancellable* cancellable) const;

    /// Wakes the thread's main context at each change of the connection from now on.
    void watch();

private:
    GDBusConnection* bus() const { return g_dbus_proxy_get_connection(proxy_.get()); }
    const char* path() const { return g_dbus_object_get_object_path(object_.get()); }

    std::shared_ptr<GDBusObject> object_;
    std::shared_ptr<GDBusProxy> proxy_;
    guint watch_ = 0;
};

}  // namespace dunmora
