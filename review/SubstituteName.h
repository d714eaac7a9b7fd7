#pragma once

#include <string>

namespace dunmora {

class CardSource;
class ContactRecord;
struct PersonCard;

/// Whether nothing is visible of the person's first name, last name and nickname.
/// Thread: any. Errors: none.
bool hasBlankName(const ContactRecord& contact);

/// What to call a person whose names are blank: the first that is not blank of the card's formatted
/// name, organisation, e-mail address and telephone number; "" when it has none. At most what a
/// cell shows (`kMaxShownBytes`), in the characters of the address book, so it is not safe to
/// display yet. It is only shown: no record, match key or written file contains it.
/// Thread: any. Errors: none.
std::string substituteName(const PersonCard& card);

/// The same of the person's card; "" for a person with a name, and when there is no card to read.
/// Thread: as `CardSource`. Errors: none.
std::string substituteName(const ContactRecord& contact, const CardSource* cards);

}  // namespace dunmora
