// Reads the contacts of the desktop's address book that desktop_book has filled, with libebook
// alone: the least that a program must do that asks the service for everyone.

#include "bench/peers/desktop_book.h"

#include <libebook/libebook.h>

#include <iostream>

namespace {

bool report(GError* error)
{
    if (error == nullptr) {
        return false;
    }
    std::cerr << "ebook_read: " << error->message << '\n';
    g_error_free(error);
    return true;
}

}  // namespace

int main()
{
    // The service starts slowly the first time that it is asked for a book.
    constexpr guint32 kSeconds = 30;
    GError* error = nullptr;
    auto* const registry = e_source_registry_new_sync(nullptr, &error);
    if (report(error)) {
        return 1;
    }
    auto* const source = e_source_registry_ref_source(registry, dunmora::bench::kBook);
    if (source == nullptr) {
        std::cerr << "ebook_read: there is no such book\n";
        return 1;
    }
    auto* const client = e_book_client_connect_sync(source, kSeconds, nullptr, &error);
    if (report(error)) {
        return 1;
    }
    auto* const everyone = e_book_query_any_field_contains("");
    auto* const query = e_book_query_to_string(everyone);
    GSList* contacts = nullptr;
    e_book_client_get_contacts_sync(E_BOOK_CLIENT(client), query, &contacts, nullptr, &error);
    if (report(error)) {
        return 1;
    }
    std::cout << g_slist_length(contacts) << '\n';
    g_slist_free_full(contacts, g_object_unref);
    g_free(query);
    e_book_query_unref(everyone);
    g_object_unref(client);
    g_object_unref(source);
    g_object_unref(registry);
    return 0;
}
