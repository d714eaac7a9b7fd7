#include "adapters/eds/module/GlibError.h"

#include <libebook/libebook.h>

#include <memory>

namespace dunmora {

GError** GlibError::place()
{
    g_clear_error(&error_);
    return &error_;
}

bool GlibError::isNoReply() const
{
    return is(G_IO_ERROR, G_IO_ERROR_CANCELLED) || is(G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ||
           is(E_CLIENT_ERROR, E_CLIENT_ERROR_CANCELLED) || is(G_DBUS_ERROR, G_DBUS_ERROR_TIMEOUT) ||
           is(G_DBUS_ERROR, G_DBUS_ERROR_TIMED_OUT);
}

bool GlibError::isNoSuchPerson() const
{
    return is(E_BOOK_CLIENT_ERROR, E_BOOK_CLIENT_ERROR_CONTACT_NOT_FOUND);
}

bool GlibError::isExistingPerson() const
{
    return is(E_BOOK_CLIENT_ERROR, E_BOOK_CLIENT_ERROR_CONTACT_ID_ALREADY_EXISTS);
}

bool GlibError::isChangedOnServer() const
{
    return is(E_CLIENT_ERROR, E_CLIENT_ERROR_OUT_OF_SYNC);
}

bool GlibError::isReplyLost() const
{
    constexpr int kInternalError = 500;
    constexpr int kBadGateway = 502;
    constexpr int kGatewayTimeout = 504;
    return is(G_IO_ERROR, G_IO_ERROR_PARTIAL_INPUT) ||
           is(G_IO_ERROR, G_IO_ERROR_CONNECTION_CLOSED) || is(G_TLS_ERROR, G_TLS_ERROR_EOF) ||
           is(E_SOUP_SESSION_ERROR, kInternalError) || is(E_SOUP_SESSION_ERROR, kBadGateway) ||
           is(E_SOUP_SESSION_ERROR, kGatewayTimeout);
}

bool GlibError::isClosed() const
{
    return is(G_IO_ERROR, G_IO_ERROR_CLOSED) || is(G_DBUS_ERROR, G_DBUS_ERROR_DISCONNECTED);
}

std::string GlibError::sentence() const
{
    if (isNoReply()) {
        return kNoReply;
    }
    if (is(G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) ||
        is(G_DBUS_ERROR, G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND)) {
        return kNotInstalled;
    }
    if (is(E_CLIENT_ERROR, E_CLIENT_ERROR_REPOSITORY_OFFLINE)) {
        return kNoServer;
    }
    if (isClosed()) {
        return "The connection to the session bus (D-Bus) is closed.";
    }
    std::string text = "The service gave no reason";
    if (error_ != nullptr && error_->message != nullptr) {
        g_dbus_error_strip_remote_error(error_);
        const std::unique_ptr<char, decltype(&g_free)> valid(g_utf8_make_valid(error_->message, -1),
                                                             g_free);
        text = valid.get();
    }
    for (auto& c : text) {
        c = c >= '\0' && c < ' ' ? ' ' : c;
    }
    return text.ends_with('.') ? text : text + ".";
}

}  // namespace dunmora
