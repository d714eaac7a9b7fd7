#pragma once

#include "adapters/eds/ContactService.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

// Cards to be added to a book of the service.
// Thread: any. Errors: none.

/// The people of a backup.
struct EdsBackup {
    /// Their cards in UTF-8; `uid` is empty where a card has none.
    std::vector<ContactText> people;
    /// How many cards break off or have no properties, how many are lists, and how many are in
    /// another character set than UTF-8.
    std::size_t skipped = 0;
    std::size_t groups = 0;
    std::size_t unreadable = 0;
};

EdsBackup readBackup(std::string_view content);

/// What to call the person of a card in a message; it can be anything.
std::string nameIn(const ContactText& person);

/// The card with this uid, for one that has none.
std::string withUid(std::string_view card, std::string_view uid);

/// A uid that nobody else has.
std::string newUid();

}  // namespace dunmora
