#pragma once

#include "adapters/eds/ContactService.h"
#include "adapters/eds/module/GlibError.h"

#include <libebook/libebook.h>

#include <string>
#include <vector>

namespace dunmora {

/// The query for all contacts of a book.
inline constexpr auto kEverybody = R"((contains "x-evolution-any-field" ""))";

/// Appends the people whom a query finds; lists of people are omitted. Errors: false, and `error`.
bool queryPeople(EClient& client, const std::string& query, std::vector<ContactText>& people,
                 GCancellable* cancellable, GlibError& error);

/// Reads at least those of these people who are in the book, by query: the call for a single
/// contact serializes its card again, which then cannot be compared with a stored one. Errors: as
/// above.
bool fetchPeople(EClient& client, const std::vector<std::string>& uids,
                 std::vector<ContactText>& people, GCancellable* cancellable, GlibError& error);

}  // namespace dunmora
