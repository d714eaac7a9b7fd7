#include "adapters/eds/module/ServerStatus.h"

#include "adapters/eds/module/GlibError.h"
#include "adapters/eds/module/GlibOwned.h"

#include <string_view>

namespace dunmora {

namespace {

constexpr auto kSourceInterface = "org.gnome.evolution.dataserver.Source";
constexpr auto kPropertiesInterface = "org.freedesktop.DBus.Properties";

}  // namespace

ServerStatus::ServerStatus(ESource& source) : object_(owned(e_source_ref_dbus_object(&source)))
{
    if (object_) {
        proxy_ = owned(G_DBUS_PROXY(g_dbus_object_get_interface(object_.get(), kSourceInterface)));
    }
}

ServerStatus::~ServerStatus()
{
    if (watch_ != 0) {
        g_dbus_connection_signal_unsubscribe(bus(), watch_);
    }
}

bool ServerStatus::isConnected(GCancellable* cancellable) const
{
    if (!proxy_) {
        return false;
    }
    GlibError error;
    const auto reply = owned(g_dbus_connection_call_sync(
        bus(), g_dbus_proxy_get_name(proxy_.get()), path(), kPropertiesInterface, "Get",
        g_variant_new("(ss)", kSourceInterface, "ConnectionStatus"), G_VARIANT_TYPE("(v)"),
        G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, cancellable, error.place()));
    if (!reply) {
        return false;
    }
    GVariant* inner = nullptr;
    g_variant_get(reply.get(), "(v)", &inner);
    const auto status = owned(inner);
    return g_variant_is_of_type(status.get(), G_VARIANT_TYPE_STRING) != FALSE &&
           std::string_view(g_variant_get_string(status.get(), nullptr)) == "connected";
}

void ServerStatus::watch()
{
    if (proxy_ && watch_ == 0) {
        watch_ = g_dbus_connection_signal_subscribe(
            bus(), g_dbus_proxy_get_name(proxy_.get()), kPropertiesInterface, "PropertiesChanged",
            path(), kSourceInterface, G_DBUS_SIGNAL_FLAGS_NONE,
            [](GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
               const char* /*interface*/, const char* /*signal*/, GVariant* /*parameters*/,
               void* /*unused*/) {},
            nullptr, nullptr);
    }
}

}  // namespace dunmora
