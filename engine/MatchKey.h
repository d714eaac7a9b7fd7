#pragma once

#include "base/ContactFields.h"
#include "engine/ContactRecord.h"

#include <string>
#include <string_view>

namespace dunmora {

/// The match fields that the preferences choose now. Reads each flag once.
MatchFieldChoice chosenMatchFields();

/// The contact's values of the chosen fields, exactly as stored, each followed by "-".
std::string matchKey(const ContactRecord& contact, const MatchFieldChoice& choice);

/// Appends the same text to `key`.
void appendMatchKey(std::string& key, const ContactRecord& contact, const MatchFieldChoice& choice);

/// Whether the contact's values of the chosen fields make this key.
bool hasMatchKey(const ContactRecord& contact, const MatchFieldChoice& choice,
                 std::string_view key);

}  // namespace dunmora
