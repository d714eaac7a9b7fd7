#pragma once

#include "platform/Person.h"

#include <cstddef>
#include <memory_resource>
#include <string_view>
#include <vector>

namespace dunmora {

/// Where a person's card stands in its text: from the beginning of the line of its BEGIN to the end
/// of the line of its END, line end included.
struct CardRange {
    std::size_t begin = 0;
    std::size_t end = 0;
    /// The bytes of the line end after END; 0 at the end of a text without one.
    std::size_t lineEndSize = 0;
};

/// Reads people out of texts of vCard 2.1 (versit), 3.0 (RFC 2426) and 4.0 (RFC 6350) cards, as
/// address books really write them.
///
/// Whatever stands between the cards is passed over. A card is a person when it has BEGIN, END and
/// a property between them; group and list cards are not people. A card nested as the value of
/// AGENT is part of the card around it.
///
/// Thread: one at a time. The people hold views into the texts and into the reader.
class CardReader final {
public:
    /// What the bytes of a text are.
    enum class Text {
        /// UTF-8, or another encoding that contains ASCII and that CHARSET parameters tell.
        Bytes,
        /// UTF-8 throughout; CHARSET parameters hold only for quoted-printable and base64 text.
        Utf8,
    };

    struct Cards {
        /// The people, in the order of the text, and beside each the range of its card. A person
        /// whose card has no UID has an empty uid.
        std::vector<Person> people;
        std::vector<CardRange> ranges;
        /// Where the cards begin that are no person's because they have no END or no property.
        std::vector<std::size_t> skipped;
        /// How many group and list cards there are.
        std::size_t groups = 0;
    };

    CardReader() = default;
    ~CardReader() = default;
    CardReader(const CardReader&) = delete;
    CardReader& operator=(const CardReader&) = delete;

    /// Adds the cards of a text, which must stay in place as long as the people are used.
    void read(std::string_view text, Text kind, Cards& cards);

private:
    // Holds the texts that do not stand in the source as they are read, and the lists of phones.
    std::pmr::monotonic_buffer_resource memory_;
};

/// The date and time of a REV property (RFC 6350 §4.3, basic or extended form): UTC when it names
/// no zone, midnight when it is only a date, fractions of a second cut; none when unreadable.
std::optional<std::chrono::sys_seconds> readRevision(std::string_view text);

}  // namespace dunmora
