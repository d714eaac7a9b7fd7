#pragma once

#include <string>

namespace dunmora {

class ContactRecord;

/// What to call a person: "Ann Lee", else the first of the nickname and the phone numbers that is
/// not blank, else "". Of each text it contains what a cell shows (`shownPart`), in the characters
/// of the address book, so it is not safe to display yet.
///
/// When it is empty, each program chooses the words: the terminal program shows the uid, which its
/// commands accept; the windows, which show no uid anywhere, say "no name".
///
/// Thread: any. Errors: none.
std::string personName(const ContactRecord& contact);

}  // namespace dunmora
