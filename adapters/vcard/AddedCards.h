#pragma once

#include "adapters/vcard/CardFile.h"
#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/TextDecoding.h"
#include "platform/Person.h"
#include "text/TextIndex.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
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
        /// Lives as long as the `AddedCards`.
        const Person* person;
        /// The numbers of the first cards with the same text and the same uid, or the card's own.
        std::uint32_t firstWithText;
        std::uint32_t firstWithUid;

        std::string_view uid() const { return person->uid; }
        /// What to call the person in a message; it can be anything.
        std::string name() const;
    };

    /// The cards of a file, which must stay alive.
    explicit AddedCards(const CardFile& file);
    ~AddedCards() = default;
    AddedCards(const AddedCards&) = delete;
    AddedCards& operator=(const AddedCards&) = delete;

    const std::vector<AddedCard>& all() const { return cards_; }
    const CardFile& file() const { return file_; }
    FileEncoding encoding() const { return file_.encoding(); }
    /// The offsets of cards that break off, and the number of lists; neither are added.
    const std::vector<std::size_t>& skipped() const { return read_.skipped; }
    std::size_t groups() const { return read_.groups.size(); }

    /// Looks for the cards in a file of the book. Cards are the same when their texts are, whatever
    /// their encodings and line ends.
    void compareWith(const CardFile& file);

    /// Whether the same card is in the book.
    bool isPresent(const AddedCard& card) const { return isTextInBook_[card.firstWithText]; }
    /// Whether another card in the book has this uid.
    bool isUidTaken(const AddedCard& card) const { return isUidInBook_[card.firstWithUid]; }

private:
    std::uint32_t firstWithTextOf(std::size_t number);
    std::uint32_t firstWithUidOf(std::size_t number);

    const CardFile& file_;
    // The people refer to it.
    CardReader reader_;
    CardReader::Cards read_;
    std::vector<AddedCard> cards_;
    // The first card with each text, and with each uid.
    TextIndex byText_;
    TextIndex byUid_;
    // By the number of that card.
    std::vector<bool> isTextInBook_;
    std::vector<bool> isUidInBook_;
};

/// The card in another encoding. Nothing when it cannot be converted without a loss, such as a card
/// whose values are in several character sets.
std::optional<std::string> converted(std::string_view card, FileEncoding from, FileEncoding to);

}  // namespace dunmora
