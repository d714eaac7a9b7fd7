#pragma once

#include "adapters/vcard/CardReader.h"
#include "platform/PersonCard.h"
#include "text/TextHash.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace dunmora {

/// The lists of people in a book, such as mailing lists, and the uids of their members.
///
/// Thread: as a standard container. Errors: none.
class ListMembers final {
public:
    /// Adds the list with this card (KIND:group, RFC 6350 §6.1.4, or X-ADDRESSBOOKSERVER-KIND).
    void add(std::string_view card, CardReader::Text kind);

    /// Whether no list has been added.
    bool isEmpty() const { return names_.empty(); }

    /// The names of the lists, in their order, that have the person with these properties as a
    /// member.
    std::vector<std::string> listsOf(const std::vector<CardProperty>& person) const;

private:
    std::vector<std::string> names_;
    // The positions of a member's lists.
    std::unordered_map<std::string, std::vector<std::size_t>, TextHash> lists_;
};

}  // namespace dunmora
