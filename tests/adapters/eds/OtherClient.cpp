#include "tests/adapters/eds/OtherClient.h"

#include <libebook/libebook.h>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>

namespace dunmora::test {

namespace {

/// Throws the error of a call, if it failed.
class Check final {
public:
    Check() = default;
    ~Check() { g_clear_error(&error_); }
    Check(const Check&) = delete;
    Check& operator=(const Check&) = delete;

    GError** place() { return &error_; }

    void done(bool isDone) const
    {
        if (!isDone) {
            throw std::runtime_error(error_ != nullptr ? error_->message : "no reason");
        }
    }

private:
    GError* error_ = nullptr;
};

std::shared_ptr<ESourceRegistry> registry()
{
    Check check;
    std::shared_ptr<ESourceRegistry> made(e_source_registry_new_sync(nullptr, check.place()),
                                          [](ESourceRegistry* each) { g_clear_object(&each); });
    check.done(made != nullptr);
    return made;
}

std::shared_ptr<GSList> contactsOf(const std::vector<std::string>& cards)
{
    GSList* list = nullptr;
    for (const auto& card : cards) {
        list = g_slist_prepend(list, e_contact_new_from_vcard(card.c_str()));
    }
    return {g_slist_reverse(list), [](GSList* each) { g_slist_free_full(each, g_object_unref); }};
}

std::string uidOf(EContact* contact)
{
    return static_cast<const char*>(e_contact_get_const(contact, E_CONTACT_UID));
}

std::shared_ptr<ESource> sourceOf(const std::string& book)
{
    std::shared_ptr<ESource> source(e_source_registry_ref_source(registry().get(), book.c_str()),
                                    [](ESource* each) { g_clear_object(&each); });
    Check().done(source != nullptr);
    return source;
}

void awaitStatus(const std::string& book,
                 const std::function<bool(ESourceConnectionStatus)>& isAwaited)
{
    constexpr int kAttempts = 500;
    for (int i = 0; !isAwaited(e_source_get_connection_status(sourceOf(book).get())); ++i) {
        Check().done(i < kAttempts);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

/// Returns when everybody can see the status; the library only sends it.
void report(const std::string& book, ESourceConnectionStatus reported)
{
    e_source_set_connection_status(sourceOf(book).get(), reported);
    awaitStatus(book, [&](auto status) { return status == reported; });
}

}  // namespace

class OtherClient::Connection final {
public:
    explicit Connection(const std::string& book)
    {
        // The service's clients, and the process that serves a new book, learn of it a moment after
        // it was created.
        constexpr int kAttempts = 500;
        for (int i = 0; client_ == nullptr; ++i) {
            Check check;
            ESource* const source = e_source_registry_ref_source(registry().get(), book.c_str());
            if (source != nullptr) {
                client_ = e_book_client_connect_sync(source, static_cast<guint32>(-1), nullptr,
                                                     check.place());
                g_object_unref(source);
            }
            if (client_ == nullptr) {
                check.done(i < kAttempts);
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            }
        }
    }
    ~Connection() { g_clear_object(&client_); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    EBookClient* book() const { return E_BOOK_CLIENT(client_); }

    std::shared_ptr<GSList> contacts() const
    {
        Check check;
        GSList* list = nullptr;
        check.done(e_book_client_get_contacts_sync(book(),
                                                   R"((contains "x-evolution-any-field" ""))",
                                                   &list, nullptr, check.place()) != FALSE);
        return {list, [](GSList* each) { g_slist_free_full(each, g_object_unref); }};
    }

private:
    EClient* client_ = nullptr;
};

OtherClient::OtherClient() = default;
OtherClient::~OtherClient() = default;

OtherClient::Connection& OtherClient::connection(const std::string& book)
{
    auto& known = connections_[book];
    if (!known) {
        known = std::make_unique<Connection>(book);
    }
    return *known;
}

void OtherClient::makeBook(const std::string& uid, const std::string& name, const std::string& kind)
{
    Check check;
    ESource* const source = e_source_new_with_uid(uid.c_str(), nullptr, check.place());
    check.done(source != nullptr);
    e_source_set_parent(source, "local-stub");
    e_source_set_display_name(source, name.c_str());
    e_source_backend_set_backend_name(
        E_SOURCE_BACKEND(e_source_get_extension(source, E_SOURCE_EXTENSION_ADDRESS_BOOK)),
        kind.c_str());
    const bool isDone = e_source_registry_commit_source_sync(registry().get(), source, nullptr,
                                                             check.place()) != FALSE;
    g_object_unref(source);
    check.done(isDone);
    if (kind == "local") {
        connection(uid);
    }
}

void OtherClient::makeServerBook(const std::string& uid, const std::string& name,
                                 std::uint16_t port)
{
    Check check;
    ESource* const source = e_source_new_with_uid(uid.c_str(), nullptr, check.place());
    check.done(source != nullptr);
    e_source_set_parent(source, "carddav-stub");
    e_source_set_display_name(source, name.c_str());
    const auto extension = [source](const char* extensionName) {
        return e_source_get_extension(source, extensionName);
    };
    e_source_backend_set_backend_name(E_SOURCE_BACKEND(extension(E_SOURCE_EXTENSION_ADDRESS_BOOK)),
                                      "carddav");
    auto* const authentication =
        E_SOURCE_AUTHENTICATION(extension(E_SOURCE_EXTENSION_AUTHENTICATION));
    e_source_authentication_set_host(authentication, "127.0.0.1");
    e_source_authentication_set_port(authentication, port);
    e_source_authentication_set_method(authentication, "none");
    e_source_authentication_set_proxy_uid(authentication, "system-proxy");
    e_source_security_set_method(E_SOURCE_SECURITY(extension(E_SOURCE_EXTENSION_SECURITY)), "none");
    e_source_webdav_set_resource_path(E_SOURCE_WEBDAV(extension(E_SOURCE_EXTENSION_WEBDAV_BACKEND)),
                                      "/book/");
    e_source_offline_set_stay_synchronized(E_SOURCE_OFFLINE(extension(E_SOURCE_EXTENSION_OFFLINE)),
                                           TRUE);
    const bool isDone = e_source_registry_commit_source_sync(registry().get(), source, nullptr,
                                                             check.place()) != FALSE;
    g_object_unref(source);
    check.done(isDone);
    connection(uid);
}

void OtherClient::removeBook(const std::string& uid)
{
    connections_.erase(uid);
    const auto known = registry();
    ESource* const source = e_source_registry_ref_source(known.get(), uid.c_str());
    if (source != nullptr) {
        Check check;
        const bool isDone = e_source_remove_sync(source, nullptr, check.place()) != FALSE;
        g_object_unref(source);
        check.done(isDone);
    }
}

void OtherClient::close(const std::string& book)
{
    // Before that is reported, the service seems to be disconnected already, and its real
    // disconnection would come while the next client connects.
    awaitStatus(book, [](auto status) { return status == E_SOURCE_CONNECTION_STATUS_CONNECTED; });
    connections_.erase(book);
    awaitStatus(book,
                [](auto status) { return status == E_SOURCE_CONNECTION_STATUS_DISCONNECTED; });
}

void OtherClient::awaitLoss(const std::string& book)
{
    awaitStatus(book, [](auto status) { return status != E_SOURCE_CONNECTION_STATUS_CONNECTED; });
}

void OtherClient::refresh(const std::string& book)
{
    Check check;
    check.done(e_client_refresh_sync(E_CLIENT(connection(book).book()), nullptr, check.place()) !=
               FALSE);
}

void OtherClient::loseServer(const std::string& book)
{
    report(book, E_SOURCE_CONNECTION_STATUS_DISCONNECTED);
}

void OtherClient::keepLosingServer(const std::string& book, const std::atomic<bool>& isDone)
{
    const auto source = sourceOf(book);
    // The library sends changes only.
    for (bool isOdd = false; !isDone; isOdd = !isOdd) {
        e_source_set_connection_status(source.get(), isOdd ? E_SOURCE_CONNECTION_STATUS_DISCONNECTED
                                                           : E_SOURCE_CONNECTION_STATUS_SSL_FAILED);
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
}

void OtherClient::claimServer(const std::string& book)
{
    report(book, E_SOURCE_CONNECTION_STATUS_CONNECTED);
}

void OtherClient::add(const std::string& book, const std::vector<std::string>& cards)
{
    if (cards.empty()) {
        return;
    }
    Check check;
    GSList* uids = nullptr;
    const auto contacts = contactsOf(cards);
    const bool isDone = e_book_client_add_contacts_sync(connection(book).book(), contacts.get(),
                                                        E_BOOK_OPERATION_FLAG_NONE, &uids, nullptr,
                                                        check.place()) != FALSE;
    g_slist_free_full(uids, g_free);
    check.done(isDone);
}

void OtherClient::remove(const std::string& book, const std::vector<std::string>& uids)
{
    if (uids.empty()) {
        return;
    }
    Check check;
    GSList* list = nullptr;
    for (const auto& uid : uids) {
        list = g_slist_prepend(list, g_strdup(uid.c_str()));
    }
    const bool isDone = e_book_client_remove_contacts_sync(connection(book).book(), list,
                                                           E_BOOK_OPERATION_FLAG_NONE, nullptr,
                                                           check.place()) != FALSE;
    g_slist_free_full(list, g_free);
    check.done(isDone);
}

void OtherClient::edit(const std::string& book, const std::string& card)
{
    Check check;
    const auto contacts = contactsOf({card});
    check.done(e_book_client_modify_contact_sync(connection(book).book(), E_CONTACT(contacts->data),
                                                 E_BOOK_OPERATION_FLAG_NONE, nullptr,
                                                 check.place()) != FALSE);
}

std::vector<std::string> OtherClient::uids(const std::string& book)
{
    std::vector<std::string> uids;
    const auto contacts = connection(book).contacts();
    for (auto* item = contacts.get(); item != nullptr; item = item->next) {
        uids.push_back(uidOf(E_CONTACT(item->data)));
    }
    return uids;
}

std::map<std::string, std::string> OtherClient::cards(const std::string& book)
{
    std::map<std::string, std::string> cards;
    const auto contacts = connection(book).contacts();
    for (auto* item = contacts.get(); item != nullptr; item = item->next) {
        // The card is the stored text only until a property is read.
        char* const card = e_vcard_to_string(E_VCARD(item->data), EVC_FORMAT_VCARD_30);
        cards.emplace(uidOf(E_CONTACT(item->data)), card);
        g_free(card);
    }
    return cards;
}

}  // namespace dunmora::test
