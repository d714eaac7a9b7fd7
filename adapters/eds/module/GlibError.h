#pragma once

#include <gio/gio.h>

#include <string>

namespace dunmora {

inline constexpr auto kNoReply = "The service did not reply in time.";
inline constexpr auto kNotInstalled = "Evolution Data Server is not installed.";
inline constexpr auto kNoServer = "Its server cannot be reached.";

/// The error of a call to GLib or a library above it, if it failed.
class GlibError final {
public:
    GlibError() = default;
    ~GlibError() { g_clear_error(&error_); }
    GlibError(const GlibError&) = delete;
    GlibError& operator=(const GlibError&) = delete;

    /// Where a call puts its error; clears the one before.
    GError** place();

    bool isNoReply() const;
    bool isNoSuchPerson() const;

    /// Whether the book has a card with the uid of a new one.
    bool isExistingPerson() const;

    /// Whether the server refused because it has another version of the card.
    bool isChangedOnServer() const;

    /// Whether the server may have carried out the request although its reply was lost.
    bool isReplyLost() const;

    /// Whether the connection to the session bus is closed.
    bool isClosed() const;

    /// The error in a sentence for the user.
    std::string sentence() const;

private:
    bool is(GQuark domain, int code) const
    {
        return g_error_matches(error_, domain, code) != FALSE;
    }

    mutable GError* error_ = nullptr;
};

}  // namespace dunmora
