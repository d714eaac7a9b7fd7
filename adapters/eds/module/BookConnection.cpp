#include "adapters/eds/module/BookConnection.h"

#include "adapters/eds/ContactService.h"
#include "adapters/eds/module/BoundedCall.h"
#include "adapters/eds/module/GlibOwned.h"
#include "adapters/eds/module/ServerStatus.h"
#include "adapters/eds/module/SessionBus.h"

#include <chrono>

namespace dunmora {

namespace {

using Clock = std::chrono::steady_clock;

// A part of the time that the callers have for reading or finding.
constexpr std::chrono::seconds kServerLimit(3);

/// Waits for an event in this thread's main context. Returns false, at once, after the deadline or
/// when the work is cancelled.
bool awaitEvent(Clock::time_point deadline, GCancellable* cancellable)
{
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    if (left.count() <= 0 || g_cancellable_is_cancelled(cancellable) != FALSE) {
        return false;
    }
    GMainContext* const context = g_main_context_get_thread_default();
    const auto attach = [context](GSource* source) {
        g_source_set_dummy_callback(source);
        g_source_attach(source, context);
        return std::shared_ptr<GSource>(source, [](GSource* each) {
            g_source_destroy(each);
            g_source_unref(each);
        });
    };
    const auto timeout = attach(g_timeout_source_new(static_cast<guint>(left.count()) + 1));
    const auto cancellation = attach(g_cancellable_source_new(cancellable));
    g_main_context_iteration(context, TRUE);
    return true;
}

/// Whether the server behind a book that was just opened can be reached; waits until that is known.
bool awaitServer(ESource& source, const std::shared_ptr<EClient>& client, GCancellable* cancellable)
{
    const auto deadline = Clock::now() + kServerLimit;
    ServerStatus status(source);
    status.watch();
    // The status is that of the last attempt, perhaps by a process that was killed since. A refresh
    // makes the service try again unless it is connected.
    if (e_client_check_refresh_supported(client.get()) != FALSE) {
        BoundedCall<bool> attempt([client](GCancellable* bounded) {
            GlibError ignored;
            return e_client_refresh_sync(client.get(), bounded, ignored.place()) != FALSE;
        });
        if (!attempt.resultBefore(deadline)) {
            return false;
        }
    }
    // The service does not try while it believes the network is down; the status does not change
    // then.
    while (e_client_is_online(client.get()) == FALSE || !status.isConnected(cancellable)) {
        if (!awaitEvent(deadline, cancellable)) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::string kindOf(ESource& source)
{
    auto* const extension = e_source_get_extension(&source, E_SOURCE_EXTENSION_ADDRESS_BOOK);
    return stringOf(e_source_backend_get_backend_name(E_SOURCE_BACKEND(extension)));
}

bool isOnServer(ESource& source)
{
    return kindOf(source) != kLocalKind;
}

std::shared_ptr<EClient> connectTo(ESource& source, GCancellable* cancellable, GlibError& error)
{
    // The library would wait in whole seconds.
    constexpr auto kNoWait = static_cast<guint32>(-1);
    if (!connectToBus(cancellable, error)) {
        return nullptr;
    }
    auto client = owned(e_book_client_connect_sync(&source, kNoWait, cancellable, error.place()));
    if (client && isOnServer(source) && !awaitServer(source, client, cancellable)) {
        g_set_error_literal(error.place(), E_CLIENT_ERROR, E_CLIENT_ERROR_REPOSITORY_OFFLINE, "");
        return nullptr;
    }
    return client;
}

bool isServed(ESource& source, GCancellable* cancellable)
{
    return !isOnServer(source) || ServerStatus(source).isConnected(cancellable);
}

}  // namespace dunmora
