#pragma once

#include "adapters/vcard/CardFile.h"
#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/TextDecoding.h"
#include "text/TextHash.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace dunmora {

/// A file with this content, which must outlive it.
CardFile cardFileOf(const std::filesystem::path& name, std::string_view bytes);

/// Cards that are to be added to a book, and whether they are in it already.
/// Thread: one at a time. Errors: none.
class AddedCards final {
public:
    struct AddedCard {
        /// As they are in the file that the card is from.
        std::string_view bytes;
        std::string_view lineEnd;
        /// What to call the person in a message; it can be anything.
        std::string name;
        std::string uid;
        /// The same card is in the book.
        bool isPresent = false;
        /// Another card in the book has this uid.
        bool isUidTaken = false;
    };

    /// The cards of a file, which must stay alive.
    explicit AddedCards(const CardFile& file);

    const std::vector<AddedCard>& all() const { return cards_; }
    FileEncoding encoding() const { return encoding_; }
    /// The offsets of cards that break off, and the number of lists; neither are added.
    const std::vector<std::size_t>& skipped() const { return skipped_; }
    std::size_t groups() const { return groups_; }

    /// Looks for the cards in a file of the book. Cards are the same when their texts are, whatever
    /// their encodings and line ends.
    void compareWith(const CardFile& file);

private:
    // Cards by their texts, or by their uids.
    using Index = std::unordered_multimap<std::string, std::size_t, TextHash>;

    void markAll(Index& index, const std::string& key, bool AddedCard::*mark);

    std::vector<AddedCard> cards_;
    FileEncoding encoding_;
    std::vector<std::size_t> skipped_;
    std::size_t groups_ = 0;
    Index byText_;
    Index byUid_;
};

/// The card in another encoding. Nothing when it cannot be converted without a loss, such as a card
/// whose values are in several character sets.
std::optional<std::string> converted(std::string_view card, FileEncoding from, FileEncoding to);

}  // namespace dunmora
