#pragma once

#include <string>

namespace dunmora {

class CardSource;
class ContactRecord;

/// What to call a person: "Ann Lee", else the first that is not blank of the nickname, what the
/// whole card offers (`substituteName`) and the phone numbers, else "". Of each text it contains
/// what a cell shows (`shownPart`), in the characters of the address book, so it is not safe to
/// display yet. `cards` is null where there are no cards; only that of a person without names is
/// read.
///
/// When it is empty, each program chooses the words: the terminal program shows the uid, which its
/// commands accept; the windows, which show no uid anywhere, say "no name".
///
/// Thread: as `CardSource`. Errors: none.
std::string personName(const ContactRecord& contact, const CardSource* cards = nullptr);

}  // namespace dunmora
