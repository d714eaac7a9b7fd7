#include "adapters/eds/module/ContactQuery.h"

#include "adapters/eds/PlainCard.h"
#include "adapters/eds/module/GlibOwned.h"

#include <memory>
#include <set>

namespace dunmora {

namespace {

/// Appends the people among the contacts, and frees the contacts.
void takePeople(GSList* contacts, std::vector<ContactText>& people)
{
    people.reserve(people.size() + g_slist_length(contacts));
    for (auto* item = contacts; item != nullptr; item = item->next) {
        auto* const contact = E_CONTACT(item->data);
        // The card comes first: it is the stored text only until a property is read.
        const std::unique_ptr<char, decltype(&g_free)> card(
            e_vcard_to_string(E_VCARD(contact), EVC_FORMAT_VCARD_30), g_free);
        if (const auto uid = plainUid(card.get())) {
            people.push_back({std::string(*uid), card.get()});
        } else if (e_contact_get(contact, E_CONTACT_IS_LIST) == nullptr) {
            people.push_back(
                {stringOf(static_cast<const char*>(e_contact_get_const(contact, E_CONTACT_UID))),
                 stringOf(card.get())});
        }
        // Now, so that the next person's text takes the memory of this contact.
        g_object_unref(contact);
    }
    g_slist_free(contacts);
}

/// The query for the contacts with these uids.
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

}  // namespace

bool queryPeople(EClient& client, const std::string& query, std::vector<ContactText>& people,
                 GCancellable* cancellable, GlibError& error)
{
    GSList* contacts = nullptr;
    if (e_book_client_get_contacts_sync(E_BOOK_CLIENT(&client), query.c_str(), &contacts,
                                        cancellable, error.place()) == FALSE) {
        return false;
    }
    takePeople(contacts, people);
    return true;
}

bool fetchPeople(EClient& client, const std::vector<std::string>& uids,
                 std::vector<ContactText>& people, GCancellable* cancellable, GlibError& error)
{
    if (!queryPeople(client, queryFor(uids), people, cancellable, error)) {
        return false;
    }
    const std::set<std::string> wanted(uids.begin(), uids.end());
    std::erase_if(people, [&](const ContactText& person) { return !wanted.contains(person.uid); });
    if (people.size() == wanted.size()) {
        return true;
    }
    // Not every kind of book can be queried by uid, and nobody who is there may count as gone.
    people.clear();
    return queryPeople(client, kEverybody, people, cancellable, error);
}

}  // namespace dunmora
