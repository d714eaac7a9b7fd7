#include "tests/adapters/eds/OtherClient.h"

#include <libebook/libebook.h>

#include <chrono>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>

namespace dunmora::test {

namespace {

/// Throws what has gone wrong, if anything has.
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

}  // namespace

class OtherClient::Connection final {
public:
    explicit Connection(const std::string& book)
    {
        // A new book is known to the service's clients, and to the process that serves it, a moment
        // after it was made.
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
        // Before any property is asked for, the card is the stored text.
        char* const card = e_vcard_to_string(E_VCARD(item->data), EVC_FORMAT_VCARD_30);
        cards.emplace(uidOf(E_CONTACT(item->data)), card);
        g_free(card);
    }
    return cards;
}

}  // namespace dunmora::test
