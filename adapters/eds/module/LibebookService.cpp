#include "adapters/eds/module/LibebookService.h"

#include "adapters/eds/module/BoundedCall.h"
#include "platform/PlatformError.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

using std::chrono::seconds;
using Clock = std::chrono::steady_clock;

// In sum less than a user is made to wait for a message: the books are listed and then read; a
// batch is looked at, removed and looked at again.
constexpr seconds kListingLimit(5);
constexpr seconds kReadingLimit(9);
constexpr seconds kFindingLimit(4);
constexpr seconds kRemovalLimit(6);
constexpr seconds kQuestionLimit(2);
// Within reading and finding: so long may it take to connect a server.
constexpr seconds kServerLimit(3);

constexpr auto kEverybody = R"((contains "x-evolution-any-field" ""))";
constexpr auto kNoBook = "The service does not list the book any more.";
constexpr auto kNotInstalled = "Evolution Data Server is not installed.";
constexpr auto kNoAnswer = "The service did not answer in time.";
constexpr auto kNoServer = "Its server cannot be reached.";
constexpr auto kServerLost =
    "Its server cannot be reached any more, so that the service may remove them there later.";
constexpr auto kUncertain = "What its server has done shows only when the book is read again.";
constexpr auto kSourceInterface = "org.gnome.evolution.dataserver.Source";
constexpr auto kPropertiesInterface = "org.freedesktop.DBus.Properties";

/// An error that a call of GLib's has filled in or not.
class Error final {
public:
    Error() = default;
    ~Error() { g_clear_error(&error_); }
    Error(const Error&) = delete;
    Error& operator=(const Error&) = delete;

    GError** place()
    {
        g_clear_error(&error_);
        return &error_;
    }

    bool is(GQuark domain, int code) const
    {
        return g_error_matches(error_, domain, code) != FALSE;
    }

    bool isNoAnswer() const
    {
        return is(G_IO_ERROR, G_IO_ERROR_CANCELLED) || is(G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ||
               is(E_CLIENT_ERROR, E_CLIENT_ERROR_CANCELLED) ||
               is(G_DBUS_ERROR, G_DBUS_ERROR_TIMEOUT) || is(G_DBUS_ERROR, G_DBUS_ERROR_TIMED_OUT);
    }

    bool isNoSuchPerson() const
    {
        return is(E_BOOK_CLIENT_ERROR, E_BOOK_CLIENT_ERROR_CONTACT_NOT_FOUND);
    }

    /// Whether the server has refused because of what it has meanwhile.
    bool isChangedOnServer() const { return is(E_CLIENT_ERROR, E_CLIENT_ERROR_OUT_OF_SYNC); }

    /// Whether a server may have done what it was asked to do, although it has not said so.
    bool isAnswerLost() const
    {
        constexpr int kInternalError = 500;
        constexpr int kBadGateway = 502;
        constexpr int kGatewayTimeout = 504;
        return is(G_IO_ERROR, G_IO_ERROR_PARTIAL_INPUT) ||
               is(G_IO_ERROR, G_IO_ERROR_CONNECTION_CLOSED) || is(G_TLS_ERROR, G_TLS_ERROR_EOF) ||
               is(E_SOUP_SESSION_ERROR, kInternalError) || is(E_SOUP_SESSION_ERROR, kBadGateway) ||
               is(E_SOUP_SESSION_ERROR, kGatewayTimeout);
    }

    bool isClosed() const
    {
        return is(G_IO_ERROR, G_IO_ERROR_CLOSED) || is(G_DBUS_ERROR, G_DBUS_ERROR_DISCONNECTED);
    }

    /// In a sentence for the user.
    std::string sentence() const
    {
        if (isNoAnswer()) {
            return kNoAnswer;
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
        std::string text = "The service gives no reason";
        if (error_ != nullptr && error_->message != nullptr) {
            g_dbus_error_strip_remote_error(error_);
            const std::unique_ptr<char, decltype(&g_free)> valid(
                g_utf8_make_valid(error_->message, -1), g_free);
            text = valid.get();
        }
        for (auto& c : text) {
            c = c >= '\0' && c < ' ' ? ' ' : c;
        }
        return text.ends_with('.') ? text : text + ".";
    }

private:
    mutable GError* error_ = nullptr;
};

template <typename Type>
std::shared_ptr<Type> owned(Type* object)
{
    return std::shared_ptr<Type>(object, [](Type* each) {
        if (each != nullptr) {
            g_object_unref(each);
        }
    });
}

std::shared_ptr<GVariant> owned(GVariant* variant)
{
    return {variant, [](GVariant* each) {
                if (each != nullptr) {
                    g_variant_unref(each);
                }
            }};
}

std::string text(const char* characters)
{
    return characters != nullptr ? characters : "";
}

/// Whether there is a session bus to ask; asking GLib for one could start one.
bool hasBus()
{
    // NOLINTBEGIN(concurrency-mt-unsafe): nothing of ours changes the environment
    const char* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    // NOLINTEND(concurrency-mt-unsafe)
    std::error_code error;
    return (address != nullptr && *address != '\0') ||
           (folder != nullptr &&
            std::filesystem::exists(std::filesystem::path(folder) / "bus", error));
}

std::shared_ptr<GDBusConnection> connectToBus(GCancellable* cancellable, Error& error)
{
    auto bus = owned(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, error.place()));
    if (!bus) {
        return nullptr;
    }
    // The process would end with the bus, in the middle of a deletion.
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    if (g_dbus_connection_is_closed(bus.get()) != FALSE) {
        // The libraries above would try it all the same, and complain on standard error.
        g_set_error_literal(error.place(), G_IO_ERROR, G_IO_ERROR_CLOSED, "");
        return nullptr;
    }
    return bus;
}

/// Whether the bus knows a service for the descriptions of address books by this method's answer.
/// Its name ends in the version of its interface.
bool isNamedBy(GDBusConnection& bus, const char* method, GCancellable* cancellable)
{
    Error error;
    const auto answer = owned(g_dbus_connection_call_sync(
        &bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
        nullptr, G_VARIANT_TYPE("(as)"), G_DBUS_CALL_FLAGS_NONE, -1, cancellable, error.place()));
    if (!answer) {
        return false;
    }
    const auto names = owned(g_variant_get_child_value(answer.get(), 0));
    for (gsize i = 0; i < g_variant_n_children(names.get()); ++i) {
        const auto name = owned(g_variant_get_child_value(names.get(), i));
        if (std::string_view(g_variant_get_string(name.get(), nullptr))
                .starts_with("org.gnome.evolution.dataserver.Sources")) {
            return true;
        }
    }
    return false;
}

/// Whether the service runs or the bus knows how to start it.
bool canStartService(GDBusConnection& bus, GCancellable* cancellable)
{
    return isNamedBy(bus, "ListNames", cancellable) ||
           isNamedBy(bus, "ListActivatableNames", cancellable);
}

std::string kindOf(ESource& source)
{
    auto* const extension = e_source_get_extension(&source, E_SOURCE_EXTENSION_ADDRESS_BOOK);
    return text(e_source_backend_get_backend_name(E_SOURCE_BACKEND(extension)));
}

/// Whether there is a server behind a book, of which the desktop keeps a copy.
bool isOnServer(ESource& source)
{
    return kindOf(source) != "local";
}

/// What the service says of the server behind a book, and when it says something else. It is asked
/// each time: what the library remembers is as old as the last turn of a main loop, and there is
/// none here.
///
/// Thread: one that has a main context of its own.
class ServerStatus final {
public:
    explicit ServerStatus(ESource& source) : object_(owned(e_source_ref_dbus_object(&source)))
    {
        if (object_) {
            proxy_ =
                owned(G_DBUS_PROXY(g_dbus_object_get_interface(object_.get(), kSourceInterface)));
        }
    }
    ~ServerStatus()
    {
        if (watch_ != 0) {
            g_dbus_connection_signal_unsubscribe(bus(), watch_);
        }
    }
    ServerStatus(const ServerStatus&) = delete;
    ServerStatus& operator=(const ServerStatus&) = delete;

    bool isConnected(GCancellable* cancellable) const
    {
        if (!proxy_) {
            return false;
        }
        Error error;
        const auto answer = owned(g_dbus_connection_call_sync(
            bus(), g_dbus_proxy_get_name(proxy_.get()), path(), kPropertiesInterface, "Get",
            g_variant_new("(ss)", kSourceInterface, "ConnectionStatus"), G_VARIANT_TYPE("(v)"),
            G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, cancellable, error.place()));
        if (!answer) {
            return false;
        }
        GVariant* inner = nullptr;
        g_variant_get(answer.get(), "(v)", &inner);
        const auto status = owned(inner);
        return g_variant_is_of_type(status.get(), G_VARIANT_TYPE_STRING) != FALSE &&
               std::string_view(g_variant_get_string(status.get(), nullptr)) == "connected";
    }

    /// Begins to let the thread's main context turn at each change.
    void watch()
    {
        if (proxy_ && watch_ == 0) {
            watch_ = g_dbus_connection_signal_subscribe(
                bus(), g_dbus_proxy_get_name(proxy_.get()), kPropertiesInterface,
                "PropertiesChanged", path(), kSourceInterface, G_DBUS_SIGNAL_FLAGS_NONE,
                [](GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                   const char* /*interface*/, const char* /*signal*/, GVariant* /*parameters*/,
                   void* /*unused*/) {},
                nullptr, nullptr);
        }
    }

private:
    GDBusConnection* bus() const { return g_dbus_proxy_get_connection(proxy_.get()); }
    const char* path() const { return g_dbus_object_get_object_path(object_.get()); }

    std::shared_ptr<GDBusObject> object_;
    std::shared_ptr<GDBusProxy> proxy_;
    guint watch_ = 0;
};

/// Turns the main context of this thread when something happens there, but not after the deadline
/// and no more once the work is cancelled. Returns whether there is a next time.
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

/// Whether the server behind a book that was opened right now can be reached; waits while that is
/// being found out.
bool awaitServer(ESource& source, const std::shared_ptr<EClient>& client, GCancellable* cancellable)
{
    const auto deadline = Clock::now() + kServerLimit;
    ServerStatus status(source);
    status.watch();
    // The status is that of the last attempt, which was perhaps made by a process that was killed
    // since. Asked to refresh its copy the service tries again, unless it is connected.
    if (e_client_check_refresh_supported(client.get()) != FALSE) {
        BoundedCall<bool> attempt([client](GCancellable* bounded) {
            Error ignored;
            return e_client_refresh_sync(client.get(), bounded, ignored.place()) != FALSE;
        });
        if (!attempt.resultBefore(deadline)) {
            return false;
        }
    }
    // While it takes the whole network for away it does not try, and the status stays as it was.
    while (e_client_is_online(client.get()) == FALSE || !status.isConnected(cancellable)) {
        if (!awaitEvent(deadline, cancellable)) {
            return false;
        }
    }
    return true;
}

/// Opens a book. Without its server the desktop would serve its copy: it holds who was there some
/// time ago, and a removal from it is only noted down, to be done later whatever the server has by
/// then. So such a book cannot be opened.
std::shared_ptr<EClient> connectTo(ESource& source, GCancellable* cancellable, Error& error)
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

/// Whether what a book says and does is what its server says and does.
bool isServed(ESource& source, GCancellable* cancellable)
{
    return !isOnServer(source) || ServerStatus(source).isConnected(cancellable);
}

/// Appends the people among the contacts, and frees the contacts.
void takePeople(GSList* contacts, std::vector<ContactText>& people)
{
    for (auto* item = contacts; item != nullptr; item = item->next) {
        auto* const contact = E_CONTACT(item->data);
        // First of all the card, which is the stored text only until a property is asked for.
        const std::unique_ptr<char, decltype(&g_free)> card(
            e_vcard_to_string(E_VCARD(contact), EVC_FORMAT_VCARD_30), g_free);
        if (e_contact_get(contact, E_CONTACT_IS_LIST) == nullptr) {
            people.push_back(
                {text(static_cast<const char*>(e_contact_get_const(contact, E_CONTACT_UID))),
                 text(card.get())});
        }
    }
    g_slist_free_full(contacts, g_object_unref);
}

/// The question for the contacts with these uids.
std::string queryFor(const std::vector<std::string>& people)
{
    std::vector<EBookQuery*> parts;
    parts.reserve(people.size());
    for (const auto& uid : people) {
        parts.push_back(e_book_query_field_test(E_CONTACT_UID, E_BOOK_QUERY_IS, uid.c_str()));
    }
    EBookQuery* const whole = e_book_query_or(static_cast<int>(parts.size()), parts.data(), TRUE);
    const std::unique_ptr<char, decltype(&g_free)> query(e_book_query_to_string(whole), g_free);
    e_book_query_unref(whole);
    return query.get();
}

/// Asks a book for contacts. Returns whether it has answered.
bool query(EClient& client, const std::string& question, std::vector<ContactText>& people,
           GCancellable* cancellable, Error& error)
{
    GSList* contacts = nullptr;
    if (e_book_client_get_contacts_sync(E_BOOK_CLIENT(&client), question.c_str(), &contacts,
                                        cancellable, error.place()) == FALSE) {
        return false;
    }
    takePeople(contacts, people);
    return true;
}

/// Asks for the contacts with these uids, by questions only: the call for a single contact gives
/// its card written anew, which cannot be compared with a stored one.
bool fetch(EClient& client, const std::vector<std::string>& uids, std::vector<ContactText>& people,
           GCancellable* cancellable, Error& error)
{
    if (!query(client, queryFor(uids), people, cancellable, error)) {
        return false;
    }
    const std::set<std::string> wanted(uids.begin(), uids.end());
    std::erase_if(people, [&](const ContactText& person) { return !wanted.contains(person.uid); });
    if (people.size() == wanted.size()) {
        return true;
    }
    // Not every kind of book can be asked for uids, and nobody must pass for gone who is there.
    people.clear();
    return query(client, kEverybody, people, cancellable, error);
}

BookContent unanswered()
{
    BookContent content;
    content.failure = kNoAnswer;
    content.isUnanswered = true;
    return content;
}

}  // namespace

struct LibebookService::Listed {
    std::string failure;
    std::shared_ptr<GDBusConnection> bus;
    std::vector<ServiceBook> books;
    std::map<std::string, Connection> connections;
};

struct LibebookService::Read {
    BookContent content;
    std::shared_ptr<EClient> client;
};

struct LibebookService::Removed {
    RemovalAnswer answer;
    std::shared_ptr<EClient> client;
};

bool LibebookService::isThere()
{
    if (!hasBus()) {
        return false;
    }
    struct Answer {
        bool isThere;
        std::shared_ptr<GDBusConnection> bus;
    };
    BoundedCall<Answer> call([](GCancellable* cancellable) {
        Error error;
        const auto bus = connectToBus(cancellable, error);
        return Answer{bus && canStartService(*bus, cancellable), bus};
    });
    const auto answer = call.resultBefore(Clock::now() + kQuestionLimit);
    bus_ = answer ? answer->bus : nullptr;
    return answer && answer->isThere;
}

LibebookService::Listed LibebookService::list(GCancellable* cancellable)
{
    Listed listed;
    Error error;
    listed.bus = connectToBus(cancellable, error);
    if (!listed.bus) {
        listed.failure =
            (error.isClosed() ? "" : "There is no session bus (D-Bus). ") + error.sentence();
        return listed;
    }
    // Without the service the library knows of no books, and takes that for the truth.
    if (!canStartService(*listed.bus, cancellable)) {
        listed.failure = kNotInstalled;
        return listed;
    }
    const auto registry = owned(e_source_registry_new_sync(cancellable, error.place()));
    if (!registry) {
        listed.failure = error.sentence();
        return listed;
    }
    if (!isNamedBy(*listed.bus, "ListNames", cancellable)) {
        listed.failure = "Evolution Data Server cannot be started.";
        return listed;
    }
    GList* const sources =
        e_source_registry_list_enabled(registry.get(), E_SOURCE_EXTENSION_ADDRESS_BOOK);
    for (auto* item = sources; item != nullptr; item = item->next) {
        auto* const source = E_SOURCE(item->data);
        const auto uid = text(e_source_get_uid(source));
        listed.books.push_back({uid, text(e_source_get_display_name(source)), kindOf(*source)});
        listed.connections[uid].source = owned(E_SOURCE(g_object_ref(source)));
    }
    g_list_free_full(sources, g_object_unref);
    return listed;
}

std::vector<ServiceBook> LibebookService::books()
{
    const std::string about = "The desktop's address books cannot be reached: ";
    connections_.clear();
    if (!hasBus()) {
        throw PlatformError(about + "There is no session bus (D-Bus).");
    }
    BoundedCall<Listed> call(&LibebookService::list);
    auto listed = call.resultBefore(Clock::now() + kListingLimit);
    if (!listed) {
        throw PlatformError(about + kNoAnswer);
    }
    if (!listed->failure.empty()) {
        throw PlatformError(about + listed->failure);
    }
    bus_ = listed->bus;
    connections_ = std::move(listed->connections);
    return std::move(listed->books);
}

LibebookService::Read LibebookService::readAll(const Connection& connection,
                                               GCancellable* cancellable)
{
    Read read;
    Error error;
    read.client = connectTo(*connection.source, cancellable, error);
    if (!read.client || !query(*read.client, kEverybody, read.content.people, cancellable, error)) {
        read.content.failure = error.sentence();
        read.content.isUnanswered = error.isNoAnswer();
        return read;
    }
    read.content.isWritable = e_client_is_readonly(read.client.get()) == FALSE;
    // Servers are asked by the desktop for one removal after the other, so more at once gains
    // nothing there, and what had been done before a failure could not be told.
    constexpr std::size_t kManyAtOnce = 200;
    const bool takesMany = !isOnServer(*connection.source) &&
                           e_client_check_capability(read.client.get(), "bulk-removes") != FALSE;
    read.content.batchSize = takesMany ? kManyAtOnce : 1;
    return read;
}

std::vector<BookContent> LibebookService::read(const std::vector<std::string>& books)
{
    const auto deadline = Clock::now() + kReadingLimit;
    std::vector<BoundedCall<Read>> calls;
    calls.reserve(books.size());
    for (const auto& book : books) {
        calls.emplace_back([connection = connections_.at(book)](GCancellable* cancellable) {
            return readAll(connection, cancellable);
        });
    }
    std::vector<BookContent> contents;
    contents.reserve(books.size());
    auto reads = resultsBefore(deadline, calls);
    for (std::size_t i = 0; i < books.size(); ++i) {
        auto& read = reads[i];
        if (!read) {
            contents.push_back(unanswered());
            continue;
        }
        connections_.at(books[i]).client = read->content.failure.empty() ? read->client : nullptr;
        contents.push_back(std::move(read->content));
    }
    return contents;
}

LibebookService::Read LibebookService::findSome(const Connection& connection,
                                                const std::vector<std::string>& people,
                                                GCancellable* cancellable)
{
    Read found;
    Error error;
    found.client = connection.client;
    if (found.client && isServed(*connection.source, cancellable) &&
        fetch(*found.client, people, found.content.people, cancellable, error)) {
        return found;
    }
    // The process that serves the book may have ended; it is started again for the next to come.
    found.content.people.clear();
    found.client = connectTo(*connection.source, cancellable, error);
    if (!found.client || !fetch(*found.client, people, found.content.people, cancellable, error)) {
        found.content.failure = error.sentence();
        found.content.isUnanswered = error.isNoAnswer();
    }
    return found;
}

BookContent LibebookService::find(const std::string& book, const std::vector<std::string>& people)
{
    BookContent content;
    const auto known = connections_.find(book);
    if (known == connections_.end()) {
        content.failure = kNoBook;
        return content;
    }
    auto& connection = known->second;
    if (connection.isUncertain) {
        content.failure = kUncertain;
        return content;
    }
    BoundedCall<Read> call([connection, people](GCancellable* cancellable) {
        return findSome(connection, people, cancellable);
    });
    auto found = call.resultBefore(Clock::now() + kFindingLimit);
    if (!found) {
        connection.client = nullptr;
        return unanswered();
    }
    connection.client = found->content.failure.empty() ? found->client : nullptr;
    return std::move(found->content);
}

LibebookService::Removed LibebookService::removeSome(const Connection& connection,
                                                     const std::vector<std::string>& people,
                                                     GCancellable* cancellable)
{
    using Outcome = RemovalAnswer::Outcome;
    Removed removed;
    Error error;
    removed.client =
        connection.client ? connection.client : connectTo(*connection.source, cancellable, error);
    if (!removed.client) {
        removed.answer = {error.isNoAnswer() ? Outcome::NoAnswer : Outcome::Refused,
                          error.sentence()};
        return removed;
    }
    if (!isServed(*connection.source, cancellable)) {
        removed.answer = {Outcome::Refused, kNoServer};
        return removed;
    }
    GSList* uids = nullptr;
    for (const auto& person : people) {
        uids = g_slist_prepend(uids, g_strdup(person.c_str()));
    }
    uids = g_slist_reverse(uids);
    // Else the service would remove whatever a server has by now, not what it has shown.
    const bool isDone =
        e_book_client_remove_contacts_sync(E_BOOK_CLIENT(removed.client.get()), uids,
                                           E_BOOK_OPERATION_FLAG_CONFLICT_FAIL, cancellable,
                                           error.place()) != FALSE;
    g_slist_free_full(uids, g_free);
    if (!isDone) {
        removed.answer = {error.isNoSuchPerson()                       ? Outcome::NoSuchPerson
                          : error.isChangedOnServer()                  ? Outcome::Changed
                          : error.isNoAnswer() || error.isAnswerLost() ? Outcome::NoAnswer
                                                                       : Outcome::Refused,
                          error.sentence()};
    } else if (!isServed(*connection.source, cancellable)) {
        // To the service it is done, too, once it has noted it down for later.
        removed.answer = {Outcome::NoAnswer, kServerLost};
    }
    return removed;
}

RemovalAnswer LibebookService::remove(const std::string& book,
                                      const std::vector<std::string>& people)
{
    // To the library an empty list is a mistake in the program.
    if (people.empty()) {
        return {};
    }
    const auto known = connections_.find(book);
    if (known == connections_.end()) {
        return {RemovalAnswer::Outcome::Refused, kNoBook};
    }
    auto& connection = known->second;
    BoundedCall<Removed> call([connection, people](GCancellable* cancellable) {
        return removeSome(connection, people, cancellable);
    });
    auto removed = call.resultBefore(Clock::now() + kRemovalLimit);
    if (!removed) {
        removed = Removed{{RemovalAnswer::Outcome::NoAnswer, kNoAnswer}, nullptr};
    }
    connection.client = removed->client;
    if (removed->answer.outcome == RemovalAnswer::Outcome::NoAnswer) {
        connection.client = nullptr;
        connection.isUncertain = isOnServer(*connection.source);
    }
    return std::move(removed->answer);
}

}  // namespace dunmora
